// Logging, session, semaphore, status record and user rights.
#include "api_support.h"
#include "call_registry.h"
#include "logging.h"
#include "model_store.h"
#include "refused_users.h"
#include "semaphore.h"

#include "ksvapi.h"

#include <cstdarg>
#include <cstdio>

using namespace ksvsim::detail;

namespace {

bool grantsOperation(const std::string& grant, const std::string& key) {
    if (grant == "*" || grant == key) {
        return true;
    }
    const bool isPrefix = grant.size() > 2 && grant.compare(grant.size() - 2, 2, ".*") == 0;
    return isPrefix && key.compare(0, grant.size() - 1, grant, 0, grant.size() - 1) == 0;
}

bool userMayOpen(const std::string& name) {
    if (name.empty() || RefusedUsers::instance().isRefused(name)) {
        return false;
    }
    return ModelStore::instance().read([&name](const Model& model) {
        const User* user = model.findUser(name);
        return (user != nullptr && user->cimAccess) || model.trustsAccount(name);
    });
}

bool userMayPerform(const std::string& name, const std::string& operationKey) {
    if (RefusedUsers::instance().isRefused(name)) {
        return false;
    }
    return ModelStore::instance().read([&](const Model& model) {
        const User* user = model.findUser(name);
        if (user == nullptr) {
            return false;
        }
        for (const std::string& grant : user->operations) {
            if (grantsOperation(grant, operationKey)) {
                return true;
            }
        }
        return false;
    });
}

} // namespace

extern "C" {

void log_message(int level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    logLine(level, format, args);
    va_end(args);
}

void ksv_panic(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    std::vfprintf(stderr, format, args);
    std::fflush(stderr);
    if (!logsToStandardError()) {
        logLine(KSV_LOG_FATAL, format, copy);
    }
    va_end(copy);
    va_end(args);
    std::abort();
}

int api_ksvOpenForCimserver(const char* userName) {
    const std::string name(argumentText(userName));
    return tracedCall("api_ksvOpenForCimserver", name,
                      [&name]() -> int { return userMayOpen(name) ? API_OK : API_E_DENIED; });
}

int cim_sem_wait(void) {
    return tracedCall("cim_sem_wait", "", []() -> int {
        return GlobalSemaphore::instance().wait() ? API_OK : API_E_SEM_TIMEOUT;
    });
}

int cim_sem_post(void) {
    return tracedCall("cim_sem_post", "", []() -> int {
        return GlobalSemaphore::instance().post() ? API_OK : API_E_INVALID;
    });
}

void api_initStatus(api_status_t* status) {
    recordCall("api_initStatus");
    if (status != nullptr) {
        status->code = 0;
        status->text[0] = '\0';
    }
}

void errinfo_set_str(api_status_t* status, int code, const char* text) {
    recordCall("errinfo_set_str", std::to_string(code) + " " + std::string(argumentText(text)));
    if (status != nullptr) {
        status->code = code;
        std::snprintf(status->text, sizeof status->text, "%s", text != nullptr ? text : "");
    }
}

int api_authorizeCIMUser(const char* userName, const char* ipAddr, const char* operationKey) {
    (void)ipAddr; // rights do not depend on the client's address
    const std::string name(argumentText(userName));
    const std::string key(argumentText(operationKey));
    return tracedCall("api_authorizeCIMUser", name + " " + key,
                      [&]() -> int { return userMayPerform(name, key) ? API_OK : API_E_DENIED; });
}

int api_checkUserPassword(const char* userName, const char* password) {
    const std::string name(argumentText(userName));
    return tracedCall("api_checkUserPassword", name, [&]() -> int {
        if (password == nullptr) {
            return API_E_DENIED;
        }
        return ModelStore::instance().read([&](const Model& model) -> int {
            const User* user = model.findUser(name);
            return user != nullptr && user->password == password ? API_OK : API_E_DENIED;
        });
    });
}

} // extern "C"
