// Addresses of pictures that a provider makes of files.
.pragma library

/// What looks like an escape in a path is none.
function pictureUrl(provider, path) {
    return "image://" + provider + "/" + path.replace(/%/g, "%25")
}
