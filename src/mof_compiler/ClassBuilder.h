#ifndef KSV_MOF_CLASSBUILDER_H
#define KSV_MOF_CLASSBUILDER_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>

#include "mof_compiler/MofAst.h"
#include "mof_compiler/NamespaceStore.h"

namespace ksv::mof {

// The resolved class of a declaration: the superclass's properties and
// methods that are not overridden come first (propagated, with their class
// origin), then the class's own in declaration order. An override keeps the
// class origin of the element it overrides, as OpenPegasus reports it, and
// is not propagated. Throws MofError for an undefined superclass or
// reference class, a redefinition without Override, an Override of nothing,
// a changed type, a new key below a keyed superclass and qualifier misuse.
Pegasus::CIMClass buildClass(const NamespaceStore& store, const ast::Class& declaration);

} // namespace ksv::mof

#endif
