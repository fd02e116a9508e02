#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>

#include "../Common/CommonTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>

PEGASUS_USING_PEGASUS;

namespace {

// Counts live copies, so that every clone() must be matched by a destroy().
class CountingContainer : virtual public OperationContext::Container {
public:
    static const String NAME;
    static std::atomic<int> live;

    explicit CountingContainer(int tag) : tag(tag) { ++live; }
    CountingContainer(const CountingContainer& other)
        : OperationContext::Container(), tag(other.tag) {
        ++live;
    }
    ~CountingContainer() override { --live; }

    String getName() const override { return NAME; }
    OperationContext::Container* clone() const override { return new CountingContainer(*this); }
    void destroy() override { delete this; }

    const int tag;
};

const String CountingContainer::NAME = "CountingContainer";
std::atomic<int> CountingContainer::live{0};

String userOf(const OperationContext& context) {
    return IdentityContainer(context.get(IdentityContainer::NAME)).getUserName();
}

int tagOf(const OperationContext& context) {
    return dynamic_cast<const CountingContainer&>(context.get(CountingContainer::NAME)).tag;
}

TEST(OperationContext, ContainersAreKeptOnePerTypeName) {
    OperationContext context;
    context.insert(IdentityContainer("alice"));
    context.insert(TimeoutContainer(500));
    EXPECT_EQ(userOf(context), "alice");
    EXPECT_EQ(TimeoutContainer(context.get(TimeoutContainer::NAME)).getTimeOut(), 500u);
    EXPECT_EQ(IdentityContainer::NAME, "IdentityContainer");
    EXPECT_EQ(TimeoutContainer::NAME, "TimeoutContainer");
    EXPECT_EQ(messageOf([&] { context.insert(IdentityContainer("mallory")); }),
              "object already exists.");
    EXPECT_EQ(userOf(context), "alice");

    context.set(IdentityContainer("bob"));
    EXPECT_EQ(userOf(context), "bob");
    context.remove(IdentityContainer::NAME);
    EXPECT_FALSE(context.contains(IdentityContainer::NAME));
    EXPECT_TRUE(context.contains(TimeoutContainer::NAME));
    EXPECT_EQ(messageOf([&] { context.get(IdentityContainer::NAME); }), "object not found");
    EXPECT_EQ(messageOf([&] { context.remove(IdentityContainer::NAME); }), "object not found");
    EXPECT_EQ(messageOf([&] { context.set(IdentityContainer("bob")); }), "object not found");
    context.clear();
    EXPECT_FALSE(context.contains(TimeoutContainer::NAME));
}

// Copies and assignments hold clones of their own, each released once through destroy().
TEST(OperationContext, HoldsCopiesAndReleasesEachThroughDestroy) {
    ASSERT_EQ(CountingContainer::live, 0);
    {
        OperationContext context;
        context.insert(CountingContainer(42));
        OperationContext copy(context);
        OperationContext assigned;
        assigned.insert(TimeoutContainer(7));
        assigned = context;
        OperationContext& alias = context;
        context = alias;
        context.set(CountingContainer(43));
        EXPECT_EQ(tagOf(copy), 42);
        EXPECT_EQ(tagOf(assigned), 42);
        EXPECT_FALSE(assigned.contains(TimeoutContainer::NAME));
        EXPECT_EQ(tagOf(context), 43);
        EXPECT_EQ(CountingContainer::live, 3);
        context.remove(CountingContainer::NAME);
        EXPECT_EQ(CountingContainer::live, 2);
    }
    EXPECT_EQ(CountingContainer::live, 0);
    const CountingContainer foreign(1);
    EXPECT_THROW(IdentityContainer identity(foreign), DynamicCastFailedException);
    EXPECT_THROW(TimeoutContainer timeout(foreign), DynamicCastFailedException);
}

// One object serving two handler interfaces, as a server's handler may.
class PathAndInstanceHandler : public InstanceResponseHandler, public ObjectPathResponseHandler {
public:
    void processing() override {}
    void complete() override {}
    void deliver(const CIMInstance&) override {}
    void deliver(const Array<CIMInstance>&) override {}
    void deliver(const CIMObjectPath&) override {}
    void deliver(const Array<CIMObjectPath>&) override {}

    using ResponseHandler::getContext;
};

TEST(ResponseHandler, KeepsItsOwnCopyOfTheContextAndCopiesCarryIt) {
    PathAndInstanceHandler handler;
    EXPECT_FALSE(handler.getContext().contains(IdentityContainer::NAME));
    OperationContext context;
    context.insert(IdentityContainer("alice"));
    static_cast<InstanceResponseHandler&>(handler).setContext(context);
    context.set(IdentityContainer("bob"));
    EXPECT_EQ(userOf(handler.getContext()), "alice");
    static_cast<ObjectPathResponseHandler&>(handler).setContext(context);
    EXPECT_EQ(userOf(handler.getContext()), "bob");

    PathAndInstanceHandler copy(handler);
    handler.setContext(OperationContext());

    EXPECT_EQ(userOf(copy.getContext()), "bob");
    EXPECT_FALSE(handler.getContext().contains(IdentityContainer::NAME));
}

} // namespace
