// The dialogs and menus that are open, in the order in which they were shown.
.pragma library

const open = []

function add(modal) {
    if (!open.includes(modal))
        open.push(modal)
}

/// Those that were shown after it and still are.
function above(modal) {
    return open.slice(open.indexOf(modal) + 1)
}

/// Whether it was there.
function remove(modal) {
    const at = open.indexOf(modal)
    if (at >= 0)
        open.splice(at, 1)
    return at >= 0
}

/// The one that was shown last; undefined where there is none.
function top() {
    return open[open.length - 1]
}
