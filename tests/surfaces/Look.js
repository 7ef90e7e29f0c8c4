.pragma library

// The first item under `item` that matches, itself included; null for none.
function find(item, matches) {
    if (matches(item))
        return item;
    for (let i = 0; i < item.children.length; ++i) {
        const found = find(item.children[i], matches);
        if (found)
            return found;
    }
    return null;
}

// The first visible item that shows the text.
function label(item, text) {
    return find(item, each => each.text === text && each.visible);
}

// The first visible item of a component.
function ofType(item, name) {
    return find(item, each => each.toString().startsWith(name + "_") && each.visible);
}
