#ifndef KSV_TESTS_CIMXML_FAKECIMSERVER_H
#define KSV_TESTS_CIMXML_FAKECIMSERVER_H

#include "LoopbackResponder.h"

namespace ksv::cimxml::testing {

/// Answers every operation with canned results built by the codec: sampleClass() for classes,
/// sampleDisk(1..3) for instances, "KSV_A"/"KSV_B" for class names, 1920383410176 for a
/// property, and for a method call the return value 0 with its input parameters echoed back.
LoopbackResponder::Answer answerLikeACimServer(const LoopbackResponder::Request& request);

} // namespace ksv::cimxml::testing

#endif
