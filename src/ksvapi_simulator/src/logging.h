// Log lines of the library: level filter, sink and test capture.
#ifndef KSVSIM_LOGGING_H
#define KSVSIM_LOGGING_H

#include "ksvapi_sim.h"

#include <cstdarg>
#include <optional>
#include <string>
#include <vector>

namespace ksvsim::detail {

void logLine(int level, const char* format, va_list args);
void logText(int level, const std::string& text);

void setCapture(bool enabled);
std::vector<LogLine> captured();
void clearCaptured();

void setMaxLevel(int maxLevel);
bool logsToStandardError();
std::optional<std::string> setSink(const std::string& sink);

// Level and sink from KSV_LOG_LEVEL and KSV_LOG_SINK.
void configureLoggingFromEnvironment();

} // namespace ksvsim::detail

#endif // KSVSIM_LOGGING_H
