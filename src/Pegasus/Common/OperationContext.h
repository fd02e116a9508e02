#ifndef Pegasus_OperationContext_h
#define Pegasus_OperationContext_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>

PEGASUS_NAMESPACE_BEGIN

class OperationContextRep;

/// The context of one CIM operation: a set of containers, at most one per container name.
class PEGASUS_COMMON_LINKAGE OperationContext {
public:
    /// One piece of context, identified by its type's unique name.
    class PEGASUS_COMMON_LINKAGE Container {
    public:
        virtual ~Container();

        virtual String getName() const = 0;

        /// A copy that the caller releases with destroy().
        virtual Container* clone() const = 0;

        virtual void destroy() = 0;
    };

    OperationContext();

    /// Deep copy: every container is cloned.
    OperationContext(const OperationContext& context);

    virtual ~OperationContext();

    OperationContext& operator=(const OperationContext& context);

    void clear();

    /// Throws Exception "object not found" when no container has that name.
    const Container& get(const String& containerName) const;

    Boolean contains(const String& containerName) const;

    /// Replaces the container of the same name; throws Exception when there is none.
    void set(const Container& container);

    /// Adds a copy; throws Exception when a container of that name is already present.
    void insert(const Container& container);

    /// Throws Exception when no container has that name.
    void remove(const String& containerName);

protected:
    std::unique_ptr<OperationContextRep> _rep;
};

/// The name of the user on whose behalf the operation runs.
class PEGASUS_COMMON_LINKAGE IdentityContainer : virtual public OperationContext::Container {
public:
    static const String NAME;

    /// Throws DynamicCastFailedException when the container is not an IdentityContainer.
    IdentityContainer(const OperationContext::Container& container);
    IdentityContainer(const IdentityContainer& container);
    IdentityContainer(const String& userName);
    virtual ~IdentityContainer();

    IdentityContainer& operator=(const IdentityContainer& container);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    String getUserName() const;

private:
    IdentityContainer() = delete;

    String _userName;
};

/// An operation time-out in milliseconds.
class PEGASUS_COMMON_LINKAGE TimeoutContainer : virtual public OperationContext::Container {
public:
    static const String NAME;

    TimeoutContainer(const OperationContext::Container& container);
    TimeoutContainer(Uint32 timeout);

    virtual String getName() const;
    virtual OperationContext::Container* clone() const;
    virtual void destroy();

    Uint32 getTimeOut() const;

protected:
    Uint32 _value;

private:
    TimeoutContainer() = delete;
};

PEGASUS_NAMESPACE_END

#endif
