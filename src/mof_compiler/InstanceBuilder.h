#ifndef KSV_MOF_INSTANCEBUILDER_H
#define KSV_MOF_INSTANCEBUILDER_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMInstance.h>

#include "mof_compiler/MofAst.h"
#include "mof_compiler/NamespaceStore.h"

namespace ksv::mof {

// The instance an "instance of" declaration describes, holding every
// property of its class: the values given (not propagated) and the class
// defaults for the others (propagated). Its path carries the namespace and
// the key values. Throws MofError for an undefined or abstract class, an
// unknown or repeated property, a value of the wrong type, a missing key
// value and an undefined alias.
Pegasus::CIMInstance buildInstance(const NamespaceStore& store, const ast::Instance& declaration);

} // namespace ksv::mof

#endif
