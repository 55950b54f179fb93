// Links the library and does nothing: what is loaded and released by itself must do no harm.

int main() { return 0; }
