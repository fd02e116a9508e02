#ifndef KSV_TESTS_RECORDING_CIMCLIENT_BACKEND_H
#define KSV_TESTS_RECORDING_CIMCLIENT_BACKEND_H

#include "../CallLog.h"

#include <Pegasus/Client/CIMClientBackend.h>

#include <memory>

namespace pegasus_testing {

// A connection that records every call, setTimeout and disconnect included, in a log the test
// keeps (the connection itself belongs to the client), and answers from `answers`.
class RecordingCIMClientBackend : public CIMClientBackend {
public:
    explicit RecordingCIMClientBackend(std::shared_ptr<CallLog> log, Answers answers = Answers())
        : _log(std::move(log)), _answers(std::move(answers)) {}

    void setTimeout(Uint32 milliseconds) override { _log->record("setTimeout", milliseconds); }
    void disconnect() override { _log->record("disconnect"); }
    CIMClass getClass(const CIMNamespaceName& ns, const CIMName& cn, Boolean lo, Boolean iq,
                      Boolean ico, const CIMPropertyList& pl) override {
        _log->record("getClass", ns, cn, lo, iq, ico, pl);
        return _answers.cimClass;
    }
    Array<CIMName> enumerateClassNames(const CIMNamespaceName& ns, const CIMName& cn,
                                       Boolean di) override {
        _log->record("enumerateClassNames", ns, cn, di);
        return Array<CIMName>(1, _answers.cimClass.getClassName());
    }
    Array<CIMClass> enumerateClasses(const CIMNamespaceName& ns, const CIMName& cn, Boolean di,
                                     Boolean lo, Boolean iq, Boolean ico) override {
        _log->record("enumerateClasses", ns, cn, di, lo, iq, ico);
        return Array<CIMClass>(&_answers.cimClass, 1);
    }
    CIMInstance getInstance(const CIMNamespaceName& ns, const CIMObjectPath& p, Boolean lo,
                            Boolean iq, Boolean ico, const CIMPropertyList& pl) override {
        _log->record("getInstance", ns, p, lo, iq, ico, pl);
        return _answers.instance;
    }
    Array<CIMInstance> enumerateInstances(const CIMNamespaceName& ns, const CIMName& cn, Boolean di,
                                          Boolean lo, Boolean iq, Boolean ico,
                                          const CIMPropertyList& pl) override {
        _log->record("enumerateInstances", ns, cn, di, lo, iq, ico, pl);
        return Array<CIMInstance>(&_answers.instance, 1);
    }
    Array<CIMObjectPath> enumerateInstanceNames(const CIMNamespaceName& ns,
                                                const CIMName& cn) override {
        _log->record("enumerateInstanceNames", ns, cn);
        return _answers.paths;
    }
    void modifyInstance(const CIMNamespaceName& ns, const CIMInstance& i, Boolean iq,
                        const CIMPropertyList& pl) override {
        _log->record("modifyInstance", ns, i, iq, pl);
    }
    CIMObjectPath createInstance(const CIMNamespaceName& ns, const CIMInstance& i) override {
        _log->record("createInstance", ns, i);
        return _answers.path;
    }
    void deleteInstance(const CIMNamespaceName& ns, const CIMObjectPath& p) override {
        _log->record("deleteInstance", ns, p);
    }
    CIMValue getProperty(const CIMNamespaceName& ns, const CIMObjectPath& p,
                         const CIMName& name) override {
        _log->record("getProperty", ns, p, name);
        return _answers.value;
    }
    void setProperty(const CIMNamespaceName& ns, const CIMObjectPath& p, const CIMName& name,
                     const CIMValue& v) override {
        _log->record("setProperty", ns, p, name, v);
    }
    Array<CIMObject> associators(const CIMNamespaceName& ns, const CIMObjectPath& p,
                                 const CIMName& ac, const CIMName& rc, const String& r,
                                 const String& rr, Boolean iq, Boolean ico,
                                 const CIMPropertyList& pl) override {
        _log->record("associators", ns, p, ac, rc, r, rr, iq, ico, pl);
        return Array<CIMObject>(1, CIMObject(_answers.instance));
    }
    Array<CIMObjectPath> associatorNames(const CIMNamespaceName& ns, const CIMObjectPath& p,
                                         const CIMName& ac, const CIMName& rc, const String& r,
                                         const String& rr) override {
        _log->record("associatorNames", ns, p, ac, rc, r, rr);
        return _answers.paths;
    }
    Array<CIMObject> references(const CIMNamespaceName& ns, const CIMObjectPath& p,
                                const CIMName& rc, const String& r, Boolean iq, Boolean ico,
                                const CIMPropertyList& pl) override {
        _log->record("references", ns, p, rc, r, iq, ico, pl);
        return Array<CIMObject>(1, CIMObject(_answers.instance));
    }
    Array<CIMObjectPath> referenceNames(const CIMNamespaceName& ns, const CIMObjectPath& p,
                                        const CIMName& rc, const String& r) override {
        _log->record("referenceNames", ns, p, rc, r);
        return _answers.paths;
    }
    CIMValue invokeMethod(const CIMNamespaceName& ns, const CIMObjectPath& p, const CIMName& m,
                          const Array<CIMParamValue>& in, Array<CIMParamValue>& out) override {
        _log->record("invokeMethod", ns, p, m, in);
        out = _answers.outParameters;
        return _answers.value;
    }

private:
    std::shared_ptr<CallLog> _log;
    Answers _answers;
};

} // namespace pegasus_testing

#endif
