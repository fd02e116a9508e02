#include <Pegasus/Common/ResponseHandler.h>

#include <gtest/gtest.h>

PEGASUS_USING_PEGASUS;

namespace {

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

String userOf(const OperationContext& context) {
    return IdentityContainer(context.get(IdentityContainer::NAME)).getUserName();
}

TEST(ResponseHandler, StartsWithAnEmptyContext) {
    PathAndInstanceHandler handler;
    EXPECT_FALSE(handler.getContext().contains(IdentityContainer::NAME));
}

TEST(ResponseHandler, KeepsItsOwnCopyOfTheContext) {
    OperationContext context;
    context.insert(IdentityContainer("alice"));
    PathAndInstanceHandler handler;
    static_cast<InstanceResponseHandler&>(handler).setContext(context);
    context.set(IdentityContainer("bob"));

    EXPECT_EQ(userOf(handler.getContext()), "alice");
}

TEST(ResponseHandler, CopiedHandlerCarriesTheContext) {
    OperationContext context;
    context.insert(IdentityContainer("alice"));
    PathAndInstanceHandler handler;
    static_cast<ObjectPathResponseHandler&>(handler).setContext(context);

    PathAndInstanceHandler copy(handler);
    handler.setContext(OperationContext());

    EXPECT_EQ(userOf(copy.getContext()), "alice");
    EXPECT_FALSE(handler.getContext().contains(IdentityContainer::NAME));
}

} // namespace
