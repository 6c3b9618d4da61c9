#include "win32/com/event_sink.h"

#include <gtest/gtest.h>

#include "src/core/z_error.h"
#include "tests/support/error_of.h"
#include "tests/win32/com/test_server.h"
#include "win32/com/bstr.h"
#include "win32/com/com_error.h"

namespace zintra::win32 {
namespace {

using testing::kTestEvents;
using testing::TestServer;

ComPtr<IUnknown> Source(const ComPtr<TestServer>& server) {
  return ComPtr<IUnknown>(static_cast<IDispatch*>(server.Get()));
}

struct Seen {
  DISPID id = 0;
  Value text;
  size_t count = 0;
};

TEST(EventSinkTest, EventsArriveWithTheirArgumentsInDeclaredOrder) {
  auto server = TestServer::Create();
  Seen seen;
  auto sink = EventSink::Create(kTestEvents, [&](DISPID id, const EventArgs& args) {
    seen.id = id;
    seen.count = args.Count();
    seen.text = args.ValueAt(0);
  });
  Advise connection(Source(server), kTestEvents, sink, "Server.Events");
  EXPECT_TRUE(connection.Connected());
  EXPECT_EQ(server->SinkCount(), 1u);

  Bstr text("first");
  VARIANT args[2];
  args[1].vt = VT_BSTR;  // declared first
  args[1].bstrVal = text.Get();
  args[0].vt = VT_I4;
  args[0].lVal = 7;
  EXPECT_EQ(server->Fire(0xF001, {args[0], args[1]}), S_OK);
  EXPECT_EQ(seen.id, 0xF001);
  EXPECT_EQ(seen.count, 2u);
  EXPECT_EQ(seen.text, Value("first"));
}

TEST(EventSinkTest, ACancelFlagIsWrittenBackToTheSource) {
  auto server = TestServer::Create();
  auto sink = EventSink::Create(kTestEvents, [](DISPID, const EventArgs& args) {
    EXPECT_FALSE(args.BoolAt(0));
    args.SetBoolAt(0, true);
  });
  Advise connection(Source(server), kTestEvents, sink, "Server.Events");
  VARIANT_BOOL cancel = VARIANT_FALSE;
  VARIANT arg;
  arg.vt = VT_BYREF | VT_BOOL;
  arg.pboolVal = &cancel;
  server->Fire(0xF002, {arg});
  EXPECT_EQ(cancel, VARIANT_TRUE);

  // A Cancel passed as a by-reference Variant is written the same way.
  VARIANT inner;
  inner.vt = VT_BOOL;
  inner.boolVal = VARIANT_FALSE;
  arg.vt = VT_BYREF | VT_VARIANT;
  arg.pvarVal = &inner;
  server->Fire(0xF002, {arg});
  EXPECT_EQ(inner.vt, VT_BOOL);
  EXPECT_EQ(inner.boolVal, VARIANT_TRUE);
}

TEST(EventSinkTest, AHandlersErrorIsReportedAndDoesNotEscape) {
  auto server = TestServer::Create();
  std::vector<int32_t> errors;
  auto sink = EventSink::Create(
      kTestEvents, [](DISPID, const EventArgs& args) { args.At(3); },  // no such argument
      [&](DISPID, const ZError& e) { errors.push_back(e.Number()); });
  Advise connection(Source(server), kTestEvents, sink, "Server.Events");
  EXPECT_EQ(server->Fire(0xF003, {}), DISP_E_EXCEPTION);
  EXPECT_EQ(errors, std::vector<int32_t>{kErrWrongArgumentCount});
}

TEST(EventSinkTest, EndingTheConnectionUnadvisesAndSilencesTheSink) {
  auto server = TestServer::Create();
  int calls = 0;
  auto sink = EventSink::Create(kTestEvents, [&](DISPID, const EventArgs&) { ++calls; });
  {
    Advise connection(Source(server), kTestEvents, sink, "Server.Events");
    Advise moved = std::move(connection);
    EXPECT_FALSE(connection.Connected());
    server->Fire(1, {});
    EXPECT_EQ(calls, 1);
  }
  EXPECT_EQ(server->SinkCount(), 0u);

  // A source that refuses to let go keeps the sink, which then calls nothing of ours.
  auto stubborn = TestServer::Create();
  auto second = EventSink::Create(kTestEvents, [&](DISPID, const EventArgs&) { ++calls; });
  {
    Advise connection(Source(stubborn), kTestEvents, second, "Server.Events");
    stubborn->refuse_unadvise = true;
  }
  EXPECT_EQ(stubborn->SinkCount(), 1u);
  EXPECT_EQ(stubborn->Fire(1, {}), S_OK);
  EXPECT_EQ(calls, 1);
}

TEST(EventSinkTest, AdvisingWhatRaisesNoSuchEventsFails) {
  auto server = TestServer::Create();
  auto sink = EventSink::Create(IID_IDispatch, [](DISPID, const EventArgs&) {});
  std::optional<ZError> e =
      Raised([&] { Advise connection(Source(server), IID_IDispatch, sink, "Server.Other"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Source(), "Server.Other");
  EXPECT_EQ(
      ErrorOf([&] { Advise connection(ComPtr<IUnknown>(), kTestEvents, sink, "Nothing.Events"); }),
      kErrObjectNotSet);
}

}  // namespace
}  // namespace zintra::win32
