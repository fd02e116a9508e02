#ifndef KSV_TESTS_PEGASUS_CALLLOG_H
#define KSV_TESTS_PEGASUS_CALLLOG_H

// Test doubles record each call they get as one line of text ("getClass alice root/ksv ..."),
// so that a test states in one string what must reach the far side, and a swapped or dropped
// argument shows in the difference.

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/OperationContext.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace pegasus_testing {

PEGASUS_USING_PEGASUS;

// How arguments and answers show in a record. Null names and empty strings show as "-".
struct Shown {
    static std::string of(const String& s) { return s.size() ? std::string(s.getCString()) : "-"; }
    static std::string of(const CIMName& n) { return n.isNull() ? "-" : of(n.getString()); }
    static std::string of(const CIMNamespaceName& n) { return of(n.getString()); }
    static std::string of(const CIMObjectPath& p) { return of(p.toString()); }
    static std::string of(bool b) { return b ? "1" : "0"; }
    static std::string of(Uint32 n) { return std::to_string(n); }
    static std::string of(const CIMPropertyList& l) { return of(l.toString()); }
    static std::string of(const CIMValue& v) { return v.isNull() ? "null" : of(v.toString()); }
    static std::string of(const CIMInstance& i) { return of(i.getClassName()); }
    static std::string of(const CIMClass& c) { return of(c.getClassName()); }
    static std::string of(const CIMObject& o) { return of(o.getClassName()); }
    static std::string of(const CIMParamValue& p) {
        return of(p.getParameterName()) + "=" + of(p.getValue());
    }
    // The user the request runs for.
    static std::string of(const OperationContext& c) {
        return c.contains(IdentityContainer::NAME)
                   ? of(IdentityContainer(c.get(IdentityContainer::NAME)).getUserName())
                   : "-";
    }
    template <class T>
    static std::string of(const Array<T>& items) {
        std::string text = "[";
        for (Uint32 i = 0; i < items.size(); i++)
            text += (i ? " " : "") + of(items[i]);
        return text + "]";
    }
};

template <class T>
std::string show(const T& value) {
    return Shown::of(value);
}

// Safe to share between threads.
class CallLog {
public:
    template <class... Args>
    void record(const char* operation, const Args&... args) {
        std::string line = operation;
        ((line += " " + show(args)), ...);
        std::lock_guard<std::mutex> lock(_mutex);
        _lines.push_back(line);
        if (onRecord)
            onRecord();
    }

    std::vector<std::string> lines() const {
        std::lock_guard<std::mutex> lock(_mutex);
        return _lines;
    }

    std::string last() const {
        std::lock_guard<std::mutex> lock(_mutex);
        return _lines.empty() ? "" : _lines.back();
    }

    void clear() {
        std::lock_guard<std::mutex> lock(_mutex);
        _lines.clear();
    }

    // Called after each call is recorded.
    std::function<void()> onRecord;

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _lines;
};

// What the test doubles answer; each answer is told apart from every argument.
struct Answers {
    Answers() {
        paths.append(path);
        outParameters.append(CIMParamValue("Out", CIMValue(String("answer"))));
    }

    CIMClass cimClass{CIMName("Answer_Class")};
    CIMInstance instance{CIMName("Answer_Instance")};
    CIMObjectPath path{"Answer_Path.Id=1"};
    Array<CIMObjectPath> paths;
    CIMValue value{Uint32(7)};
    Array<CIMParamValue> outParameters;
};

} // namespace pegasus_testing

#endif
