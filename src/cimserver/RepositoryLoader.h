// The class repository the server answers from, compiled from the configured MOF at start-up.
#ifndef KSV_CIMSERVER_REPOSITORYLOADER_H
#define KSV_CIMSERVER_REPOSITORYLOADER_H

#include "cimserver/ServerConfig.h"
#include "mof_compiler/ClassRepository.h"

#include <string>
#include <vector>

namespace ksv::server {

// Compiles the MOF files, then the registration files. Throws mof::MofError (file, line, column)
// for the first error; the compiler's warnings are appended to `warnings`.
mof::ClassRepository loadRepository(const ServerConfig& config, std::vector<std::string>& warnings);

} // namespace ksv::server

#endif
