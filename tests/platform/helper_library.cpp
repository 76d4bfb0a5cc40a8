// One of three libraries: the first needs the second, and that the third.

extern "C" {

#ifdef NEEDED
int NEEDED();
#endif

[[gnu::visibility("default")]] int OFFERED() {
#ifdef NEEDED
    return NEEDED();
#else
    return 42;
#endif
}
}
