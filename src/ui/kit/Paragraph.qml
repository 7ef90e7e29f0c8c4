import QtQuick

// Text that wraps and may hold any script: its lines keep their distance.
Label {
    id: control

    wrapMode: Text.Wrap
    // A line with Arabic is taller than the others, by depth for the most part. It
    // would be pushed up by all of it.
    onLineLaidOut: line => {
        const top = line.number * control.type.line;
        if (line.y < top)
            line.y = top + (line.y - top) / 4;
    }
}
