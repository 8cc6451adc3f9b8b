// Nothing of its own: the target that the precompiled headers belong to.
