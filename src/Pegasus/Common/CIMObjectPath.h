#ifndef Pegasus_ObjectPath_h
#define Pegasus_ObjectPath_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

class CIMObjectPath;
class CIMValue;

// One key of an instance name: the key's name, its value in string form and
// how that string is to be read.
class PEGASUS_COMMON_LINKAGE CIMKeyBinding {
public:
    enum Type { BOOLEAN, STRING, NUMERIC, REFERENCE };

    CIMKeyBinding();
    CIMKeyBinding(const CIMKeyBinding& x);
    CIMKeyBinding(CIMKeyBinding&& x) noexcept;
    CIMKeyBinding(const CIMName& name, const String& value, Type type);
    // Takes the value's string form; arrays and embedded objects are refused
    // with TypeMismatchException.
    CIMKeyBinding(const CIMName& name, const CIMValue& value);
    ~CIMKeyBinding();

    CIMKeyBinding& operator=(const CIMKeyBinding& x);
    CIMKeyBinding& operator=(CIMKeyBinding&& x) noexcept;

    const CIMName& getName() const;
    void setName(const CIMName& name);
    const String& getValue() const;
    void setValue(const String& value);
    Type getType() const;
    void setType(Type type);

    // Whether the binding, read as the value's type, holds that value.
    Boolean equal(CIMValue value);

private:
    CIMName _name;
    String _value;
    Type _type;
};

// Same name (without regard to case), same type and same value: references
// compare as object paths, numbers by value, booleans without regard to case.
PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMKeyBinding& x, const CIMKeyBinding& y);

// The name of a class or instance: host, namespace, class and key bindings,
// in the text form [//host[:port]/][namespace:]class[.key=value,...]. Key
// bindings are kept sorted by name.
class PEGASUS_COMMON_LINKAGE CIMObjectPath {
public:
    CIMObjectPath();
    CIMObjectPath(const CIMObjectPath& x);
    CIMObjectPath(CIMObjectPath&& x) noexcept;
    // Throws MalformedObjectNameException if the text does not parse.
    CIMObjectPath(const String& objectName);
    CIMObjectPath(const String& host, const CIMNamespaceName& nameSpace, const CIMName& className,
                  const Array<CIMKeyBinding>& keyBindings = Array<CIMKeyBinding>());
    ~CIMObjectPath();

    CIMObjectPath& operator=(const CIMObjectPath& x);
    CIMObjectPath& operator=(CIMObjectPath&& x) noexcept;

    void clear();
    void set(const String& host, const CIMNamespaceName& nameSpace, const CIMName& className,
             const Array<CIMKeyBinding>& keyBindings = Array<CIMKeyBinding>());
    void set(const String& objectName);
    CIMObjectPath& operator=(const String& objectName);

    const String& getHost() const;
    void setHost(const String& host);
    const CIMNamespaceName& getNameSpace() const;
    void setNameSpace(const CIMNamespaceName& nameSpace);
    const CIMName& getClassName() const;
    void setClassName(const CIMName& className);
    const Array<CIMKeyBinding>& getKeyBindings() const;
    void setKeyBindings(const Array<CIMKeyBinding>& keyBindings);

    String toString() const;

    // Host, namespace, class and key names compare without regard to case,
    // key values as operator== on CIMKeyBinding does.
    Boolean identical(const CIMObjectPath& x) const;
    // Equal for paths that are identical().
    Uint32 makeHashCode() const;

private:
    String _toStringCanonical() const;

    String _host;
    CIMNamespaceName _nameSpace;
    CIMName _className;
    Array<CIMKeyBinding> _keyBindings;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMObjectPath& x, const CIMObjectPath& y);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const CIMObjectPath& x, const CIMObjectPath& y);

PEGASUS_NAMESPACE_END

#endif /* Pegasus_ObjectPath_h */
