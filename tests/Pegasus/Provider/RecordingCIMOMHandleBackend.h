#ifndef KSV_TESTS_RECORDING_CIMOMHANDLE_BACKEND_H
#define KSV_TESTS_RECORDING_CIMOMHANDLE_BACKEND_H

#include "../CallLog.h"

#include <Pegasus/Provider/CIMOMHandleBackend.h>

namespace pegasus_testing {

// Records every call and answers from `answers`.
class RecordingCIMOMHandleBackend : public CIMOMHandleBackend {
public:
    // Without overrideDefaults the operations that have a default in CIMOMHandleBackend are left
    // to it, as a server that serves only instances would.
    explicit RecordingCIMOMHandleBackend(bool overrideDefaults = true)
        : _overrideDefaults(overrideDefaults) {}

    CIMClass getClass(const OperationContext& c, const CIMNamespaceName& ns, const CIMName& cn,
                      Boolean lo, Boolean iq, Boolean ico, const CIMPropertyList& pl) override {
        log.record("getClass", c, ns, cn, lo, iq, ico, pl);
        return answers.cimClass;
    }
    CIMInstance getInstance(const OperationContext& c, const CIMNamespaceName& ns,
                            const CIMObjectPath& p, Boolean lo, Boolean iq, Boolean ico,
                            const CIMPropertyList& pl) override {
        log.record("getInstance", c, ns, p, lo, iq, ico, pl);
        return answers.instance;
    }
    Array<CIMInstance> enumerateInstances(const OperationContext& c, const CIMNamespaceName& ns,
                                          const CIMName& cn, Boolean di, Boolean lo, Boolean iq,
                                          Boolean ico, const CIMPropertyList& pl) override {
        log.record("enumerateInstances", c, ns, cn, di, lo, iq, ico, pl);
        return Array<CIMInstance>(&answers.instance, 1);
    }
    Array<CIMObjectPath> enumerateInstanceNames(const OperationContext& c,
                                                const CIMNamespaceName& ns,
                                                const CIMName& cn) override {
        log.record("enumerateInstanceNames", c, ns, cn);
        return answers.paths;
    }
    CIMValue getProperty(const OperationContext& c, const CIMNamespaceName& ns,
                         const CIMObjectPath& p, const CIMName& name) override {
        log.record("getProperty", c, ns, p, name);
        return answers.value;
    }
    void setProperty(const OperationContext& c, const CIMNamespaceName& ns, const CIMObjectPath& p,
                     const CIMName& name, const CIMValue& v) override {
        log.record("setProperty", c, ns, p, name, v);
    }
    void modifyInstance(const OperationContext& c, const CIMNamespaceName& ns, const CIMInstance& i,
                        Boolean iq, const CIMPropertyList& pl) override {
        log.record("modifyInstance", c, ns, i, iq, pl);
    }
    CIMObjectPath createInstance(const OperationContext& c, const CIMNamespaceName& ns,
                                 const CIMInstance& i) override {
        log.record("createInstance", c, ns, i);
        return answers.path;
    }
    void deleteInstance(const OperationContext& c, const CIMNamespaceName& ns,
                        const CIMObjectPath& p) override {
        log.record("deleteInstance", c, ns, p);
    }
    Array<CIMObject> associators(const OperationContext& c, const CIMNamespaceName& ns,
                                 const CIMObjectPath& p, const CIMName& ac, const CIMName& rc,
                                 const String& r, const String& rr, Boolean iq, Boolean ico,
                                 const CIMPropertyList& pl) override {
        log.record("associators", c, ns, p, ac, rc, r, rr, iq, ico, pl);
        return objects();
    }
    Array<CIMObjectPath> associatorNames(const OperationContext& c, const CIMNamespaceName& ns,
                                         const CIMObjectPath& p, const CIMName& ac,
                                         const CIMName& rc, const String& r,
                                         const String& rr) override {
        log.record("associatorNames", c, ns, p, ac, rc, r, rr);
        return answers.paths;
    }
    Array<CIMObject> references(const OperationContext& c, const CIMNamespaceName& ns,
                                const CIMObjectPath& p, const CIMName& rc, const String& r,
                                Boolean iq, Boolean ico, const CIMPropertyList& pl) override {
        log.record("references", c, ns, p, rc, r, iq, ico, pl);
        return objects();
    }
    Array<CIMObjectPath> referenceNames(const OperationContext& c, const CIMNamespaceName& ns,
                                        const CIMObjectPath& p, const CIMName& rc,
                                        const String& r) override {
        log.record("referenceNames", c, ns, p, rc, r);
        return answers.paths;
    }
    CIMValue invokeMethod(const OperationContext& c, const CIMNamespaceName& ns,
                          const CIMObjectPath& p, const CIMName& m, const Array<CIMParamValue>& in,
                          Array<CIMParamValue>& out) override {
        log.record("invokeMethod", c, ns, p, m, in);
        out = answers.outParameters;
        return answers.value;
    }

    Array<CIMClass> enumerateClasses(const OperationContext& c, const CIMNamespaceName& ns,
                                     const CIMName& cn, Boolean di, Boolean lo, Boolean iq,
                                     Boolean ico) override {
        if (!_overrideDefaults)
            return CIMOMHandleBackend::enumerateClasses(c, ns, cn, di, lo, iq, ico);
        log.record("enumerateClasses", c, ns, cn, di, lo, iq, ico);
        return Array<CIMClass>(&answers.cimClass, 1);
    }
    Array<CIMName> enumerateClassNames(const OperationContext& c, const CIMNamespaceName& ns,
                                       const CIMName& cn, Boolean di) override {
        if (!_overrideDefaults)
            return CIMOMHandleBackend::enumerateClassNames(c, ns, cn, di);
        log.record("enumerateClassNames", c, ns, cn, di);
        return Array<CIMName>(1, answers.cimClass.getClassName());
    }
    void createClass(const OperationContext& c, const CIMNamespaceName& ns,
                     const CIMClass& cc) override {
        if (!_overrideDefaults)
            return CIMOMHandleBackend::createClass(c, ns, cc);
        log.record("createClass", c, ns, cc);
    }
    void modifyClass(const OperationContext& c, const CIMNamespaceName& ns,
                     const CIMClass& cc) override {
        if (!_overrideDefaults)
            return CIMOMHandleBackend::modifyClass(c, ns, cc);
        log.record("modifyClass", c, ns, cc);
    }
    void deleteClass(const OperationContext& c, const CIMNamespaceName& ns,
                     const CIMName& cn) override {
        if (!_overrideDefaults)
            return CIMOMHandleBackend::deleteClass(c, ns, cn);
        log.record("deleteClass", c, ns, cn);
    }
    Array<CIMObject> execQuery(const OperationContext& c, const CIMNamespaceName& ns,
                               const String& language, const String& query) override {
        if (!_overrideDefaults)
            return CIMOMHandleBackend::execQuery(c, ns, language, query);
        log.record("execQuery", c, ns, language, query);
        return objects();
    }
    void disallowProviderUnload() override {
        if (_overrideDefaults)
            log.record("disallowProviderUnload");
    }
    void allowProviderUnload() override {
        if (_overrideDefaults)
            log.record("allowProviderUnload");
    }

    CallLog log;
    Answers answers;

private:
    Array<CIMObject> objects() const { return Array<CIMObject>(1, CIMObject(answers.instance)); }

    const bool _overrideDefaults;
};

} // namespace pegasus_testing

#endif
