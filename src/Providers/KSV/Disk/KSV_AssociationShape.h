// What the module's association providers share: the log texts of a provider, the entry
// sequence of a request, the validation of roles and result classes, and the delivery of
// results. Each provider keeps its own texts, rules and far-end searches; only the steps that
// are the same for all of them live here.
#ifndef KSV_AssociationShape_h
#define KSV_AssociationShape_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/ProviderException.h>

#include <KSV_Common.h>

#include "KSV_DiskDriveProvider.h"

#include <exception>
#include <new>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

// The lines of one association request: its entry, its parameters, the rejection of invalid
// parameters (level 2) and its exit.
struct KSV_RequestTexts {
    const char* entry;
    const char* request;
    const char* rejection;
    const char* exit;
};

struct KSV_TraceTexts {
    const char* entry;
    const char* exit;
};

// Every line a provider writes around its seven request operations, spelled exactly as its log
// vocabulary has them: the irregular spacing of some lines is kept on purpose, since log
// readers match them.
struct KSV_AssociationTexts {
    const char* providerName;
    KSV_RequestTexts associators;
    KSV_RequestTexts associatorNames;
    KSV_RequestTexts references;
    KSV_RequestTexts referenceNames;
    KSV_TraceTexts getInstance;
    const char* invalidKeyCount;
    KSV_TraceTexts enumerateInstances;
    KSV_TraceTexts enumerateInstanceNames;
};

// One associators, associatorNames, references or referenceNames request.
struct KSV_AssociationRequest {
    cim_method_e operation;
    const CIMObjectPath& objectName;
    const CIMName& associationClass;
    const CIMName& resultClass;
    const String& role;
    const String& resultRole;
};

// The classes whose objects play the two roles of an association.
struct KSV_AssociationEnds {
    const CIMName& association;
    Array<CIMName> first;
    Array<CIMName> second;
};

// What associators does with the result class when the object plays one role.
struct KSV_EndTest {
    enum Kind { NONE, REJECT, ACCEPT_ONLY };
    Kind kind;
    std::vector<const char*> classNames;

    bool rejects(const CIMName& resultClass) const;
};

// Which roles and result classes an association accepts. The rules apply in a fixed order:
// role, result role, the result class of references, then that of associators.
struct KSV_AssociationRules {
    const char* firstRole;
    const char* secondRole;
    // Accepted by references besides the association's own class.
    const char* baseClassName;
    // Accepted by associators besides the classes of both ends.
    std::vector<const char*> farClassNames;
    // Whether associators refuses a result class equal to the object's own class.
    bool rejectsOwnClass;
    KSV_EndTest fromFirstEnd;
    KSV_EndTest fromSecondEnd;

    // True when the request can have no result. Class names compare as CIM names, roles
    // without regard to case; an object of neither end passes the role tests.
    bool rejects(const KSV_AssociationEnds& ends, const CIMName& objectClass, const String& role,
                 const String& resultRole, const CIMName& resultClass,
                 const String& operationName) const;

private:
    bool rejectsRole(const KSV_AssociationEnds& ends, const CIMName& objectClass,
                     const String& role, bool isResultRole) const;
    bool rejectsAssociatorClass(const KSV_AssociationEnds& ends, const CIMName& objectClass,
                                const CIMName& resultClass) const;
};

class KSV_AssociationShape {
public:
    // The association class of a references request, which names none.
    static const CIMName& noClass();

    // The namespace of every class the providers serve or point at.
    static constexpr const char* NAMESPACE = "root/ksv";

    // Entry line, parameter line and the user gate of an association request.
    static void enter(const KSV_AssociationTexts& texts, const OperationContext& context,
                      const KSV_AssociationRequest& request);
    // The level-2 line of a request refused for its parameters; nothing is answered.
    static void reject(const KSV_AssociationTexts& texts, const KSV_AssociationRequest& request);
    static void leave(const KSV_AssociationTexts& texts, const KSV_AssociationRequest& request);
    // A level-4 line whose one parameter is the class name.
    static void traceClass(const char* format, const CIMName& className);

    // Entry line and the user gate of getInstance and the enumerations.
    static void enter(const char* entryLine, const KSV_AssociationTexts& texts,
                      const OperationContext& context);

    // getInstance takes association paths of exactly two keys.
    static void requireTwoKeys(const KSV_AssociationTexts& texts, const CIMObjectPath& path);
    // The key of the object that a reference key of the path names; empty when either is
    // missing.
    static String referencedKey(const CIMObjectPath& path, const String& role,
                                const String& keyName);
    // getInstance's answer: the first candidate whose path names the requested association;
    // none is the provider's not-found error.
    static void deliverRequested(const KSV_AssociationTexts& texts,
                                 const Array<CIMInstance>& candidates,
                                 const CIMObjectPath& instanceName,
                                 InstanceResponseHandler& handler);

    // processing(), one delivery per result in order, complete().
    static void deliverObjects(ObjectResponseHandler& handler, const Array<CIMInstance>& results);
    template <typename Handler, typename Result>
    static void deliverAll(Handler& handler, const Array<Result>& results);

    // Reads the disks of a selector under the array semaphore (a failed read reads none) and
    // visits the present ones in list order.
    template <typename Visit>
    static void forEachPresentDisk(int64_t selector, Visit&& visit);
    // The same for the first present disk that matches, if any.
    template <typename Match, typename Use>
    static void forFirstPresentDisk(int64_t selector, Match&& match, Use&& use);
    static bool hasDeviceID(const api_Disk_t& disk, const String& deviceID);
    // The first present disk of that DeviceID, reading only that disk where the library knows
    // it.
    template <typename Use>
    static void forPresentDisk(const String& deviceID, Use&& use);

    static Array<CIMObjectPath> pathsOf(const Array<CIMInstance>& instances);
    static Array<CIMName> classList(const CIMName& className);

    // A class definition from the stored class cache, as a request asks for it.
    static CIMClass storedClass(CIMOMHandle& cimom, const CIMName& className,
                                bool includeQualifiers, bool includeClassOrigin,
                                const CIMPropertyList& propertyList);

    // Runs an enumeration's work and turns whatever it throws into the operation-failed error
    // the client sees: a CIM error keeps its message after failurePrefix, memory exhaustion is
    // "Response too big".
    template <typename Work>
    static void runGuarded(const String& failurePrefix, Work&& work);
};

template <typename Handler, typename Result>
void KSV_AssociationShape::deliverAll(Handler& handler, const Array<Result>& results) {
    handler.processing();
    for (Uint32 i = 0; i < results.size(); i++)
        handler.deliver(results[i]);
    handler.complete();
}

template <typename Visit>
void KSV_AssociationShape::forEachPresentDisk(int64_t selector, Visit&& visit) {
    KSV_DiskList disks;
    disks.read(selector);
    for (Uint32 i = 0; i < disks.size(); i++) {
        if (!disks[i].isAbsent)
            visit(disks[i]);
    }
}

template <typename Match, typename Use>
void KSV_AssociationShape::forFirstPresentDisk(int64_t selector, Match&& match, Use&& use) {
    KSV_DiskList disks;
    disks.read(selector);
    for (Uint32 i = 0; i < disks.size(); i++) {
        if (!disks[i].isAbsent && match(disks[i])) {
            use(disks[i]);
            return;
        }
    }
}

template <typename Use>
void KSV_AssociationShape::forPresentDisk(const String& deviceID, Use&& use) {
    forFirstPresentDisk(
        KSV_DiskList::selectorOf(deviceID),
        [&deviceID](const api_Disk_t& disk) { return hasDeviceID(disk, deviceID); }, use);
}

template <typename Work>
void KSV_AssociationShape::runGuarded(const String& failurePrefix, Work&& work) {
    try {
        work();
    } catch (const CIMException& e) {
        throw CIMOperationFailedException(failurePrefix + e.getMessage());
    } catch (const std::bad_alloc&) {
        throw CIMOperationFailedException("Response too big");
    } catch (const std::exception& e) {
        throw CIMOperationFailedException(e.what());
    } catch (...) {
        throw CIMOperationFailedException("Unknown error");
    }
}

PEGASUS_NAMESPACE_END

#endif
