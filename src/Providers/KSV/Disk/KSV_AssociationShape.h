// What the module's association providers share: the log texts of a provider, the flow of each
// request (entry, user gate, validation, answer, exit), the validation rules, the association
// builders and the walks over the disk records. Each provider keeps its own texts, rules and
// far-end searches; only the steps that are the same for several of them live here.
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
#include <utility>
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

// The lines around the walks of an association built from the disk records. The entry lines of
// the far-end walks are formats of the object's class name.
struct KSV_WalkTexts {
    KSV_TraceTexts relatedInstances;
    KSV_TraceTexts relatedInstanceNames;
    KSV_TraceTexts instances;
    KSV_TraceTexts instanceNames;
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
    bool rejects(const KSV_AssociationEnds& ends, const KSV_AssociationRequest& request) const;

private:
    bool rejectsRole(const KSV_AssociationEnds& ends, const CIMName& objectClass,
                     const String& role, bool isResultRole) const;
    bool rejectsAssociatorClass(const KSV_AssociationEnds& ends, const CIMName& objectClass,
                                const CIMName& resultClass) const;
};

// The two ends of one association, the first end's path first.
using KSV_EndPaths = std::pair<CIMObjectPath, CIMObjectPath>;

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

    static Array<CIMObjectPath> pathsOf(const Array<CIMInstance>& instances);
    static Array<CIMName> classList(const CIMName& className);

    // The far ends' paths: the paths of the far-end instances, between the walk's two lines.
    template <typename Related>
    static Array<CIMObjectPath> relatedNames(const KSV_TraceTexts& lines,
                                             const CIMObjectPath& objectName, Related&& related) {
        traceClass(lines.entry, objectName.getClassName());
        const Array<CIMObjectPath> names = pathsOf(related());
        log_message(4, "%s", lines.exit);
        return names;
    }
    // The paths of the association instances, between the walk's two lines.
    template <typename Instances>
    static Array<CIMObjectPath> instanceNames(const KSV_TraceTexts& lines, Instances&& instances) {
        log_message(4, "%s", lines.entry);
        const Array<CIMObjectPath> names = pathsOf(instances());
        log_message(4, "%s", lines.exit);
        return names;
    }

    // Runs an enumeration's work and turns whatever it throws into the operation-failed error
    // the client sees: a CIM error keeps its message after failurePrefix, memory exhaustion is
    // "Response too big".
    template <typename Work>
    static void runGuarded(const String& failurePrefix, Work&& work) {
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
};

// One provider's association as its requests see it: its texts and rules, the classes of its
// two ends, and the handle and host that its association instances are built with.
class KSV_Association {
public:
    KSV_Association(const KSV_AssociationTexts& texts, const KSV_AssociationRules& rules,
                    const CIMName& associationClass, const Array<CIMName>& firstEnd,
                    const Array<CIMName>& secondEnd, CIMOMHandle& cimom, const String& hostAddr);

    // associators, associatorNames, references and referenceNames: entry line, parameter line
    // and user gate; a request that can have no result is logged at level 2 and answered with
    // nothing at all (the response is not even started); else answer() and the exit line.
    template <typename Answer>
    void serve(const OperationContext& context, const KSV_AssociationRequest& request,
               Answer&& answer) const {
        KSV_AssociationShape::enter(_texts, context, request);
        if (_rules.rejects(_ends, request))
            return KSV_AssociationShape::reject(_texts, request);
        answer();
        KSV_AssociationShape::leave(_texts, request);
    }
    // The same, answered with the far ends that related() or relatedNames() finds.
    template <typename Related>
    void associators(const OperationContext& context, const CIMObjectPath& objectName,
                     const CIMName& associationClass, const CIMName& resultClass,
                     const String& role, const String& resultRole, ObjectResponseHandler& handler,
                     Related&& related) const {
        serve(context,
              {KSVCIM_ASSOCIATORS, objectName, associationClass, resultClass, role, resultRole},
              [&] { KSV_AssociationShape::deliverObjects(handler, related()); });
    }
    template <typename RelatedNames>
    void associatorNames(const OperationContext& context, const CIMObjectPath& objectName,
                         const CIMName& associationClass, const CIMName& resultClass,
                         const String& role, const String& resultRole,
                         ObjectPathResponseHandler& handler, RelatedNames&& relatedNames) const {
        serve(context,
              {KSVCIM_ASSOCIATORNAMES, objectName, associationClass, resultClass, role, resultRole},
              [&] { KSV_DiskProviderSupport::deliverAll(handler, relatedNames()); });
    }
    // The same, answered with the associations of the object with each of farEnds(), the
    // object under the role of its own end.
    template <typename FarEnds>
    void references(const OperationContext& context, const CIMObjectPath& objectName,
                    const CIMName& resultClass, const String& role, bool includeQualifiers,
                    bool includeClassOrigin, const CIMPropertyList& propertyList,
                    ObjectResponseHandler& handler, FarEnds&& farEnds) const {
        serve(context,
              {KSVCIM_REFERENCES, objectName, KSV_AssociationShape::noClass(), resultClass, role,
               String::EMPTY},
              [&] {
                  const Array<CIMObjectPath> ends = farEnds();
                  KSV_AssociationShape::deliverObjects(
                      handler, associationsOf(objectName, isFirstEnd(objectName), ends,
                                              includeQualifiers, includeClassOrigin, propertyList));
              });
    }
    template <typename FarEnds>
    void referenceNames(const OperationContext& context, const CIMObjectPath& objectName,
                        const CIMName& resultClass, const String& role,
                        ObjectPathResponseHandler& handler, FarEnds&& farEnds) const {
        serve(context,
              {KSVCIM_REFERENCENAMES, objectName, KSV_AssociationShape::noClass(), resultClass,
               role, String::EMPTY},
              [&] {
                  const Array<CIMObjectPath> ends = farEnds();
                  KSV_DiskProviderSupport::deliverAll(
                      handler, associationNamesOf(objectName, isFirstEnd(objectName), ends));
              });
    }
    // The same for an association whose first end is always firstEnd: its associations with
    // each of seconds().
    template <typename Seconds>
    void referencesFrom(const CIMObjectPath& firstEnd, const OperationContext& context,
                        const CIMObjectPath& objectName, const CIMName& resultClass,
                        const String& role, bool includeQualifiers, bool includeClassOrigin,
                        const CIMPropertyList& propertyList, ObjectResponseHandler& handler,
                        Seconds&& seconds) const {
        serve(context,
              {KSVCIM_REFERENCES, objectName, KSV_AssociationShape::noClass(), resultClass, role,
               String::EMPTY},
              [&] {
                  KSV_AssociationShape::deliverObjects(
                      handler, associationsOf(firstEnd, true, seconds(), includeQualifiers,
                                              includeClassOrigin, propertyList));
              });
    }
    template <typename Seconds>
    void referenceNamesFrom(const CIMObjectPath& firstEnd, const OperationContext& context,
                            const CIMObjectPath& objectName, const CIMName& resultClass,
                            const String& role, ObjectPathResponseHandler& handler,
                            Seconds&& seconds) const {
        serve(context,
              {KSVCIM_REFERENCENAMES, objectName, KSV_AssociationShape::noClass(), resultClass,
               role, String::EMPTY},
              [&] {
                  KSV_DiskProviderSupport::deliverAll(
                      handler, associationNamesOf(firstEnd, true, seconds()));
              });
    }

    // getInstance: entry line, user gate, exactly two keys, then the first of the candidates
    // whose path names the requested association.
    template <typename Candidates>
    void getInstance(const OperationContext& context, const CIMObjectPath& instanceName,
                     InstanceResponseHandler& handler, Candidates&& candidates) const {
        KSV_AssociationShape::enter(_texts.getInstance.entry, _texts, context);
        KSV_AssociationShape::requireTwoKeys(_texts, instanceName);
        KSV_AssociationShape::deliverRequested(_texts, candidates(), instanceName, handler);
    }
    // The enumerations: entry line, user gate, every association that instances() builds (the
    // names between the lines of their own walk), exit line.
    template <typename Instances>
    void enumerateInstances(const OperationContext& context, InstanceResponseHandler& handler,
                            Instances&& instances) const {
        KSV_AssociationShape::enter(_texts.enumerateInstances.entry, _texts, context);
        KSV_DiskProviderSupport::deliverAll(handler, instances());
        log_message(4, "%s", _texts.enumerateInstances.exit);
    }
    template <typename Instances>
    void enumerateInstanceNames(const OperationContext& context, ObjectPathResponseHandler& handler,
                                const KSV_TraceTexts& walk, Instances&& instances) const {
        KSV_AssociationShape::enter(_texts.enumerateInstanceNames.entry, _texts, context);
        KSV_DiskProviderSupport::deliverAll(handler,
                                            KSV_AssociationShape::instanceNames(walk, instances));
        log_message(4, "%s", _texts.enumerateInstanceNames.exit);
    }
    // The enumerations of a provider that streams its results to the handler itself: stream()
    // runs guarded, so that the client sees any failure as the operation-failed error that
    // failurePrefix opens.
    template <typename Stream>
    void streamInstances(const OperationContext& context, const String& failurePrefix,
                         Stream&& stream) const {
        _streamGuarded(_texts.enumerateInstances, context, failurePrefix, stream);
    }
    template <typename Stream>
    void streamInstanceNames(const OperationContext& context, const String& failurePrefix,
                             Stream&& stream) const {
        _streamGuarded(_texts.enumerateInstanceNames, context, failurePrefix, stream);
    }

    bool isFirstEnd(const CIMObjectPath& path) const;

    // The association of the two ends, the first end under the first role; its class comes
    // from the stored class cache for each instance.
    CIMInstance build(const CIMObjectPath& first, const CIMObjectPath& second,
                      bool includeQualifiers, bool includeClassOrigin,
                      const CIMPropertyList& propertyList) const;
    CIMObjectPath buildName(const CIMObjectPath& first, const CIMObjectPath& second) const;
    // The associations of one end with each of the other end's paths, in their order.
    Array<CIMInstance> associationsOf(const CIMObjectPath& end, bool endIsFirst,
                                      const Array<CIMObjectPath>& others, bool includeQualifiers,
                                      bool includeClassOrigin,
                                      const CIMPropertyList& propertyList) const;
    Array<CIMObjectPath> associationNamesOf(const CIMObjectPath& end, bool endIsFirst,
                                            const Array<CIMObjectPath>& others) const;

    // One association per present disk of the DeviceID's selector (every disk for an empty
    // one), between the walk's two lines: ends(disk) names its two ends; a disk for which
    // hasEnds(disk) is false has none.
    template <typename Ends>
    Array<CIMInstance> diskAssociations(const KSV_TraceTexts& lines, const String& deviceID,
                                        bool includeQualifiers, bool includeClassOrigin,
                                        const CIMPropertyList& propertyList, Ends&& ends) const {
        return diskAssociations(
            lines, deviceID, includeQualifiers, includeClassOrigin, propertyList,
            [](const api_Disk_t&) { return true; }, ends);
    }
    template <typename HasEnds, typename Ends>
    Array<CIMInstance> diskAssociations(const KSV_TraceTexts& lines, const String& deviceID,
                                        bool includeQualifiers, bool includeClassOrigin,
                                        const CIMPropertyList& propertyList, HasEnds&& hasEnds,
                                        Ends&& ends) const {
        log_message(4, "%s", lines.entry);
        Array<CIMInstance> associations;
        KSV_DiskList::forEachPresentDisk(
            KSV_DiskList::selectorOf(deviceID), [&](const api_Disk_t& disk) {
                if (!hasEnds(disk))
                    return;
                const KSV_EndPaths paths = ends(disk);
                associations.append(build(paths.first, paths.second, includeQualifiers,
                                          includeClassOrigin, propertyList));
            });
        log_message(4, "%s", lines.exit);
        return associations;
    }

private:
    template <typename Stream>
    void _streamGuarded(const KSV_TraceTexts& trace, const OperationContext& context,
                        const String& failurePrefix, Stream& stream) const {
        KSV_AssociationShape::enter(trace.entry, _texts, context);
        KSV_AssociationShape::runGuarded(failurePrefix, stream);
        log_message(4, "%s", trace.exit);
    }

    const KSV_AssociationTexts& _texts;
    const KSV_AssociationRules& _rules;
    const KSV_AssociationEnds _ends;
    CIMOMHandle& _cimom;
    const String& _hostAddr;
};

// The far ends of an association of the storage system (the first end) with its devices. Any
// path of the system class stands for this system, whose devices are the present disks' objects;
// a device's far end is the system as the server has it, and its associations are built from its
// path as given, without looking the device up.
class KSV_SystemDevices {
public:
    KSV_SystemDevices(const KSV_WalkTexts& walks, CIMOMHandle& cimom, const CIMName& systemClass,
                      const CIMObjectPath& systemPath, const Array<CIMName>& deviceClasses);

    // describe(deviceClass, disk) builds a device of the disk.
    template <typename Describe>
    Array<CIMInstance> related(const CIMObjectPath& objectName, const OperationContext& context,
                               bool includeQualifiers, bool includeClassOrigin,
                               const CIMPropertyList& propertyList, const CIMName& deviceClass,
                               Describe&& describe) const {
        const CIMName& className = objectName.getClassName();
        KSV_AssociationShape::traceClass(_walks.relatedInstances.entry, className);
        Array<CIMInstance> related;
        if (KSV_Common::isPartOfArray(className, _deviceClasses)) {
            related = _cimom.enumerateInstances(
                context, CIMNamespaceName(KSV_AssociationShape::NAMESPACE), _systemClass, false,
                false, includeQualifiers, includeClassOrigin, propertyList);
        } else if (className.equal(_systemClass)) {
            related = KSV_DiskProviderSupport::describeDisksWhere(
                _cimom, deviceClass, includeQualifiers, includeClassOrigin, propertyList,
                [](const api_Disk_t&) { return true; }, describe);
        }
        log_message(4, "%s", _walks.relatedInstances.exit);
        return related;
    }
    template <typename Related>
    Array<CIMObjectPath> relatedNames(const CIMObjectPath& objectName, Related&& related) const {
        const CIMName& className = objectName.getClassName();
        KSV_AssociationShape::traceClass(_walks.relatedInstanceNames.entry, className);
        Array<CIMObjectPath> names;
        if (KSV_Common::isPartOfArray(className, _deviceClasses))
            names.append(_systemPath);
        else if (className.equal(_systemClass))
            names = KSV_AssociationShape::pathsOf(related());
        log_message(4, "%s", _walks.relatedInstanceNames.exit);
        return names;
    }
    // The devices whose associations references answers: the given device, or every device
    // of the system.
    template <typename RelatedNames>
    Array<CIMObjectPath> referenced(const CIMObjectPath& objectName,
                                    RelatedNames&& relatedNames) const {
        if (KSV_Common::isPartOfArray(objectName.getClassName(), _deviceClasses))
            return Array<CIMObjectPath>(&objectName, 1);
        if (objectName.getClassName().equal(_systemClass))
            return relatedNames();
        return Array<CIMObjectPath>();
    }

private:
    const KSV_WalkTexts& _walks;
    CIMOMHandle& _cimom;
    const CIMName& _systemClass;
    const CIMObjectPath& _systemPath;
    const Array<CIMName> _deviceClasses;
};

PEGASUS_NAMESPACE_END

#endif
