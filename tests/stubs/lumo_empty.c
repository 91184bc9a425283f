/* A library with the identity library's soname but without its entry points. */
int lumo_empty_marker = 1;
