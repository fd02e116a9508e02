// What the test providers saw, for the tests to check; the tests link the module.
#ifndef KSV_TESTS_CIMSERVER_PROBES_H
#define KSV_TESTS_CIMSERVER_PROBES_H

extern "C" {

// Operations called on any test provider.
__attribute__((visibility("default"))) unsigned ksvtest_operations();
// initialize calls.
__attribute__((visibility("default"))) unsigned ksvtest_initializations();
// Operations that arrived before their provider's initialize had completed.
__attribute__((visibility("default"))) unsigned ksvtest_premature_calls();
// Device instances delivered by enumerations.
__attribute__((visibility("default"))) unsigned ksvtest_delivered();
}

#endif
