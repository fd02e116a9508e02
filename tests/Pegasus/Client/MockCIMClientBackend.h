#ifndef KSV_TESTS_MOCK_CIMCLIENT_BACKEND_H
#define KSV_TESTS_MOCK_CIMCLIENT_BACKEND_H

#include <Pegasus/Client/CIMClientBackend.h>

#include <gmock/gmock.h>

class MockCIMClientBackend : public Pegasus::CIMClientBackend {
public:
    using CIMNamespaceName = Pegasus::CIMNamespaceName;
    using CIMName = Pegasus::CIMName;
    using CIMObjectPath = Pegasus::CIMObjectPath;
    using CIMPropertyList = Pegasus::CIMPropertyList;
    using CIMInstance = Pegasus::CIMInstance;
    using CIMValue = Pegasus::CIMValue;
    using String = Pegasus::String;
    using Boolean = Pegasus::Boolean;
    using Uint32 = Pegasus::Uint32;
    using ParamValues = Pegasus::Array<Pegasus::CIMParamValue>;
    using Classes = Pegasus::Array<Pegasus::CIMClass>;
    using Names = Pegasus::Array<CIMName>;
    using Instances = Pegasus::Array<CIMInstance>;
    using Objects = Pegasus::Array<Pegasus::CIMObject>;
    using Paths = Pegasus::Array<CIMObjectPath>;

    MOCK_METHOD(void, setTimeout, (Uint32), (override));
    MOCK_METHOD(void, disconnect, (), (override));
    MOCK_METHOD(Pegasus::CIMClass, getClass,
                (const CIMNamespaceName&, const CIMName&, Boolean, Boolean, Boolean,
                 const CIMPropertyList&),
                (override));
    MOCK_METHOD(Names, enumerateClassNames, (const CIMNamespaceName&, const CIMName&, Boolean),
                (override));
    MOCK_METHOD(Classes, enumerateClasses,
                (const CIMNamespaceName&, const CIMName&, Boolean, Boolean, Boolean, Boolean),
                (override));
    MOCK_METHOD(CIMInstance, getInstance,
                (const CIMNamespaceName&, const CIMObjectPath&, Boolean, Boolean, Boolean,
                 const CIMPropertyList&),
                (override));
    MOCK_METHOD(Instances, enumerateInstances,
                (const CIMNamespaceName&, const CIMName&, Boolean, Boolean, Boolean, Boolean,
                 const CIMPropertyList&),
                (override));
    MOCK_METHOD(Paths, enumerateInstanceNames, (const CIMNamespaceName&, const CIMName&),
                (override));
    MOCK_METHOD(void, modifyInstance,
                (const CIMNamespaceName&, const CIMInstance&, Boolean, const CIMPropertyList&),
                (override));
    MOCK_METHOD(CIMObjectPath, createInstance, (const CIMNamespaceName&, const CIMInstance&),
                (override));
    MOCK_METHOD(void, deleteInstance, (const CIMNamespaceName&, const CIMObjectPath&), (override));
    MOCK_METHOD(CIMValue, getProperty,
                (const CIMNamespaceName&, const CIMObjectPath&, const CIMName&), (override));
    MOCK_METHOD(void, setProperty,
                (const CIMNamespaceName&, const CIMObjectPath&, const CIMName&, const CIMValue&),
                (override));
    MOCK_METHOD(Objects, associators,
                (const CIMNamespaceName&, const CIMObjectPath&, const CIMName&, const CIMName&,
                 const String&, const String&, Boolean, Boolean, const CIMPropertyList&),
                (override));
    MOCK_METHOD(Paths, associatorNames,
                (const CIMNamespaceName&, const CIMObjectPath&, const CIMName&, const CIMName&,
                 const String&, const String&),
                (override));
    MOCK_METHOD(Objects, references,
                (const CIMNamespaceName&, const CIMObjectPath&, const CIMName&, const String&,
                 Boolean, Boolean, const CIMPropertyList&),
                (override));
    MOCK_METHOD(Paths, referenceNames,
                (const CIMNamespaceName&, const CIMObjectPath&, const CIMName&, const String&),
                (override));
    MOCK_METHOD(CIMValue, invokeMethod,
                (const CIMNamespaceName&, const CIMObjectPath&, const CIMName&, const ParamValues&,
                 ParamValues&),
                (override));
};

#endif
