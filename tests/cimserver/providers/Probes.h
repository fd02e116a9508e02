// What the test providers saw, for the tests to check; the tests link the module.
#ifndef KSV_TESTS_CIMSERVER_PROBES_H
#define KSV_TESTS_CIMSERVER_PROBES_H

enum KsvTestProbe {
    KSVTEST_OPERATIONS,      // operations called on any test provider
    KSVTEST_INITIALIZATIONS, // initialize calls
    KSVTEST_PREMATURE_CALLS, // operations that arrived before their provider was initialized
};

extern "C" __attribute__((visibility("default"))) unsigned ksvtest_count(KsvTestProbe probe);

#endif
