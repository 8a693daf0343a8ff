// Races ThreadSanitizer reports inside the prebuilt cpp-httplib library of the test servers:
// the library is not instrumented, so the atomics its threads hand work over with are not
// seen, and its own allocations look unsynchronised. Our code is not suppressed.
extern "C" const char* __tsan_default_suppressions() {
    return "race:libcpp-httplib.so\n";
}
