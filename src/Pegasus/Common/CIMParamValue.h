#ifndef Pegasus_ParamValue_h
#define Pegasus_ParamValue_h

#include <memory>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

class CIMParamValueRep;

/**
    A named argument or result of a method invocation. isTyped tells
    whether the value's type was known when it was received. A handle:
    copies share, clone() does not.
*/
class PEGASUS_COMMON_LINKAGE CIMParamValue {
public:
    CIMParamValue();
    CIMParamValue(const CIMParamValue& x);
    CIMParamValue& operator=(const CIMParamValue& x);
    /** @exception UninitializedObjectException if parameterName is empty. */
    CIMParamValue(String parameterName, CIMValue value, Boolean isTyped = true);
    ~CIMParamValue();

    String getParameterName() const;
    CIMValue getValue() const;
    Boolean isTyped() const;
    /** @exception UninitializedObjectException if parameterName is empty. */
    void setParameterName(String& parameterName);
    void setValue(CIMValue& value);
    void setIsTyped(Boolean isTyped);
    CIMParamValue clone() const;
    Boolean isUninitialized() const;

private:
    explicit CIMParamValue(std::shared_ptr<CIMParamValueRep> rep);

    std::shared_ptr<CIMParamValueRep> _rep;
};

PEGASUS_NAMESPACE_END

#endif
