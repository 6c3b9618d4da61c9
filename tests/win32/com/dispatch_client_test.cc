#include "win32/com/dispatch_client.h"

#include <gtest/gtest.h>

#include "src/core/z_error.h"
#include "tests/support/error_of.h"
#include "tests/win32/com/test_server.h"
#include "win32/com/com_error.h"
#include "win32/com/event_sink.h"

namespace zintra::win32 {
namespace {

using testing::TestServer;

ComPtr<IDispatch> AsDispatch(const ComPtr<TestServer>& server) {
  return ComPtr<IDispatch>(static_cast<IDispatch*>(server.Get()));
}

int32_t NumberOf(const std::function<void()>& call, std::string* source = nullptr) {
  try {
    call();
  } catch (const ZError& e) {
    if (source) *source = e.Source();
    return e.Number();
  }
  return 0;
}

TEST(DispatchClientTest, ReadsWritesAndCallsByName) {
  auto server = TestServer::Create();
  DispatchClient client(AsDispatch(server), "Reader");
  EXPECT_EQ(client.GetValue("name"), Value("server"));
  client.Put("Name", Variant(Value("renamed \xc3\xa9")));
  EXPECT_EQ(client.GetValue("NAME"), Value("renamed \xc3\xa9"));
  // Arguments reach the server in the order they are declared.
  EXPECT_EQ(client.Call("Add", {Arg(Value(int32_t{3})), Arg(Value(int32_t{4}))}).ToValue(),
            Value(int32_t{34}));
}

TEST(DispatchClientTest, ObjectsAreSetByReferenceAndReadBack) {
  auto server = TestServer::Create();
  auto child = TestServer::Create();
  DispatchClient client(AsDispatch(server), "Parent");
  EXPECT_FALSE(client.GetDispatch("Child"));
  client.PutRef("Child", Variant(AsDispatch(child)));
  ComPtr<IDispatch> read = client.GetDispatch("Child");
  EXPECT_EQ(read.Get(), static_cast<IDispatch*>(child.Get()));
  // A plain assignment of an object is refused by this member, as a Let would be.
  EXPECT_EQ(NumberOf([&] { client.Put("Child", Variant(AsDispatch(child))); }), kErrNoSuchMember);
}

TEST(DispatchClientTest, ByReferenceArgumentsComeBackToTheCaller) {
  auto server = TestServer::Create();
  DispatchClient client(AsDispatch(server), "Toggler");
  Variant flag(Value(false));
  client.Call("Toggle", {ByRef(flag)});
  EXPECT_EQ(flag.ToValue(), Value(true));
  client.Call("Toggle", {ByRef(flag)});
  EXPECT_EQ(flag.ToValue(), Value(false));
}

TEST(DispatchClientTest, FailuresBecomeTheRunTimeErrorNamedByTypeAndMember) {
  auto server = TestServer::Create();
  DispatchClient client(AsDispatch(server), "Widget");
  std::string source;
  EXPECT_EQ(NumberOf([&] { client.Get("Colour"); }, &source), kErrNoSuchMember);
  EXPECT_EQ(source, "Widget.Colour");
  EXPECT_FALSE(client.Has("Colour"));
  EXPECT_TRUE(client.Has("Fail"));
  // A server's own error keeps its number, text and source.
  std::optional<ZError> e = Raised([&] { client.Call("Fail"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Number(), 1234);
  EXPECT_EQ(e->Description(), "it broke");
  EXPECT_EQ(e->Source(), "TestServer");
  EXPECT_EQ(NumberOf([&] { client.Call("Add", {Arg(Value(1))}); }), kErrWrongArgumentCount);
  EXPECT_EQ(NumberOf([&] { client.Put("Name", Variant(Value(2.5))); }), kErrTypeMismatch);
  DispatchClient nothing;
  EXPECT_EQ(NumberOf([&] { nothing.Get("Name"); }), kErrObjectNotSet);
}

TEST(DispatchClientTest, NamesAreLookedUpOncePerTypeName) {
  auto first = TestServer::Create();
  auto second = TestServer::Create();
  DispatchClient a(AsDispatch(first), "CachedKind");
  DispatchClient b(AsDispatch(second), "CachedKind");
  a.Get("Name");
  a.Get("name");
  b.Get("Name");
  EXPECT_EQ(first->name_lookups, 1);
  EXPECT_EQ(second->name_lookups, 0);  // served from the type's table
  // Without a type name, each client keeps its own table.
  DispatchClient c(AsDispatch(second), "");
  c.Get("Name");
  c.Get("Name");
  EXPECT_EQ(second->name_lookups, 1);
}

TEST(DispatchClientTest, HoldsItsOwnReference) {
  auto server = TestServer::Create();
  LONG before = server->Refs();
  {
    DispatchClient client(AsDispatch(server), "Ref");
    client.Get("Name");
    EXPECT_EQ(server->Refs(), before + 1);
  }
  EXPECT_EQ(server->Refs(), before);
}

}  // namespace
}  // namespace zintra::win32
