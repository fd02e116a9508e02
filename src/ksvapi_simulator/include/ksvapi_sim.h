// ksvapi_sim.h - control of the simulated array behind libksvapi, for tests
// and tools. Every function is safe to call from several threads at once.
#ifndef KSVAPI_SIM_H
#define KSVAPI_SIM_H

#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#pragma GCC visibility push(default)

namespace ksvsim {

// ---- Array model -----------------------------------------------------------

// Why a model was refused: the file or text it came from, the place in it (a
// JSON pointer such as "/disks/3/wwn", or "line 4, column 7" for a syntax
// error; empty when the whole source is at fault) and what is wrong.
struct ModelError {
    std::string source;
    std::string place;
    std::string message;

    // "source: place: message". Inline, so that a program may reference the simulator's
    // controls weakly and run on the array's own libksvapi.
    std::string describe() const {
        return place.empty() ? source + ": " + message : source + ": " + place + ": " + message;
    }
};

// Load a model and make it the active one. On error the active model stays
// as it was and the error is returned.
std::optional<ModelError> loadModelFile(const std::string& path);
std::optional<ModelError> loadModelText(const std::string& json,
                                        const std::string& sourceName = "<text>");

// Make the built-in model active again (LED states back to the model's).
void useBuiltInModel();

// The file name of the active model, or "<built-in>" or the text's name.
std::string activeModelSource();

// ---- Forced results --------------------------------------------------------

constexpr int kUntilCleared = -1;

// Make the named library function (for example "cim_sem_wait" or
// "getDiskDeviceIDs") return 'result' without doing anything, for the next
// 'times' calls or until cleared. Output lists are left empty. Only
// functions that return int can be forced; any other name throws
// std::invalid_argument.
void forceResult(const std::string& function, int result, int times = kUntilCleared);
void clearForcedResults();

// ---- Users -----------------------------------------------------------------

// Refuse a user (api_ksvOpenForCimserver and api_authorizeCIMUser answer
// API_E_DENIED) whatever the model grants.
void refuseUser(const std::string& name);
void clearRefusedUsers();

// ---- Call log --------------------------------------------------------------

// One library call. 'argument' holds the key argument of a few functions:
// the user of api_ksvOpenForCimserver, "user operationKey" of
// api_authorizeCIMUser, the selector of api_getSystemDisks ("-10" or 16
// hexadecimal digits), the DeviceID of api_deReferenceDiskDeviceID, the disk
// id of getDiskDeviceIDs and api_getMapsPDtoVV, the volume name of
// api_getMapsVVtoCh and the key of api_getVVs, "cage:magazine:value" of
// api_locateMagazine.
struct CallRecord {
    std::string function;
    std::string argument;
    int result = 0;
    std::thread::id thread;
};

// The most recent calls (up to 10000), oldest first. log_message and
// ksv_panic are not recorded.
std::vector<CallRecord> calls();
void clearCalls();

// ---- Logging ---------------------------------------------------------------

struct LogLine {
    int level = 0;
    std::string text; // exactly as formatted
    bool operator==(const LogLine& other) const {
        return level == other.level && text == other.text;
    }
};

// While capture is on, every log line is kept whatever the level filter.
void setLogCapture(bool enabled);
std::vector<LogLine> capturedLog();
void clearCapturedLog();

// Lines of a level above 'maxLevel' do not reach the sink.
void setLogLevel(int maxLevel);

// Where lines go: "stderr", "syslog", "file:<path>" or "none". Returns an
// error text for anything else or a file that cannot be opened; the sink
// then stays as it was.
std::optional<std::string> setLogSink(const std::string& sink);

// ---- Global semaphore ------------------------------------------------------

void setSemaphoreTimeout(std::chrono::milliseconds timeout);

// How many cim_sem_post calls found the semaphore free.
unsigned semaphoreMisuseCount();
bool semaphoreHeld();

// ---- Everything ------------------------------------------------------------

// Back to the start: built-in model, no forced results or refused users,
// empty call log, capture off and emptied, semaphore free with its time-out
// and misuse count reset, log level and sink as configured by the
// environment.
void reset();

} // namespace ksvsim

#pragma GCC visibility pop

#endif // KSVAPI_SIM_H
