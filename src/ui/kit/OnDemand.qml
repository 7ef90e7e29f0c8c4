import QtQuick

// Makes its item while it is wanted, into its own parent. A Loader would not
// take a component that is bound to its surroundings.
Repeater {
    required property bool isWanted

    model: isWanted ? 1 : 0
}
