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

// Every item under `item` that matches, itself included.
function all(item, matches) {
    let found = matches(item) ? [item] : [];
    for (let i = 0; i < item.children.length; ++i)
        found = found.concat(all(item.children[i], matches));
    return found;
}

// Every visible text under `item`, from left to right and from the top down as it is built.
function texts(item) {
    return all(item, each => each.visible && (/^(Label|NumberText)_|^tonequill::NumberText/).test(each.toString())).map(each => each.text);
}

// The first visible item that shows the text.
function label(item, text) {
    return find(item, each => each.text === text && each.visible);
}

// The first visible item of a component.
function ofType(item, name) {
    return find(item, each => each.toString().startsWith(name + "_") && each.visible);
}
