#include "src/errors/cached_error.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "src/errors/programming_error.h"
#include "tests/support/error_of.h"

namespace zintra {
namespace {

ZError SampleError() { return ZError(1234, "Disk on fire", "ZintraAddin", "zintra.chm", 77, 32); }

// Catches and re-raises through three procedures, each adding its step.
CachedError ThroughThreeProcedures() {
  CachedError rec;
  try {
    try {
      try {
        throw SampleError();
      } catch (const ZError& e) {
        rec.SetTo(e, "JobProcess", "Activate", 120);
        rec.Raise();
      }
    } catch (const ZError& e) {
      rec.SetTo(e, "JobQueue", "RunJobs");
      rec.Raise();
    }
  } catch (const ZError& e) {
    rec.SetTo(e, "frmTimer", "tmr_Timer", 9);
  }
  return rec;
}

TEST(CachedErrorTest, TrailThroughThreeProceduresHasTheExactLayout) {
  CachedError rec = ThroughThreeProcedures();
  EXPECT_EQ(
      rec.Source(),
      "ZintraAddin\r\n-->JobProcess.Activate(120)-->JobQueue.RunJobs-->frmTimer.tmr_Timer(9)");
  EXPECT_EQ(rec.OrgSource(), "ZintraAddin");
  EXPECT_EQ(rec.PropogationString(),
            "JobProcess.Activate(120)-->JobQueue.RunJobs-->frmTimer.tmr_Timer(9)");
  EXPECT_EQ(rec.PropogationCount(), 3);
  EXPECT_EQ(rec.PropogationArray(),
            (std::vector<std::string>{"JobProcess.Activate(120)", "JobQueue.RunJobs",
                                      "frmTimer.tmr_Timer(9)"}));
  EXPECT_EQ(rec.InnermostModule(), "JobProcess");
  EXPECT_EQ(rec.InnermostMethod(), "Activate");
  EXPECT_EQ(rec.InnermostLine(), 120);
  EXPECT_EQ(rec.PropogatedModule(1), "JobQueue");
  EXPECT_EQ(rec.PropogatedMethod(1), "RunJobs");
  EXPECT_EQ(rec.PropogatedLine(1), 0);
  EXPECT_EQ(rec.OutermostModule(), "frmTimer");
  EXPECT_EQ(rec.OutermostMethod(), "tmr_Timer");
  EXPECT_EQ(rec.OutermostLine(), 9);
  // The other fields travel unchanged through every raise.
  EXPECT_EQ(rec.Number(), 1234);
  EXPECT_EQ(rec.Description(), "Disk on fire");
  EXPECT_EQ(rec.HelpFile(), "zintra.chm");
  EXPECT_EQ(rec.HelpContext(), 77);
  EXPECT_EQ(rec.LastDLLError(), 32);
}

TEST(CachedErrorTest, MissingNamesShowAsQuestionMarks) {
  ZError e(5, "x", "src");
  EXPECT_EQ(CachedError(e, "", "Proc").Source(), "src\r\n-->?.Proc");
  EXPECT_EQ(CachedError(e, "Mod", "").Source(), "src\r\n-->Mod.?");
  EXPECT_EQ(CachedError(e, "", "", 42).Source(), "src\r\n-->?.?(42)");
  // Nothing to add: no names and no line leave the source as it was.
  CachedError bare(e, "", "");
  EXPECT_EQ(bare.Source(), "src");
  EXPECT_EQ(bare.PropogationCount(), 0);
  EXPECT_EQ(bare.PropogationString(), "");
  EXPECT_TRUE(bare.PropogationArray().empty());
  EXPECT_EQ(CachedError(e, "", "", 42).PropogatedModule(0), "?");
}

TEST(CachedErrorTest, StepIndexOutsideTheTrailRaisesSubscriptError) {
  CachedError rec = ThroughThreeProcedures();
  for (int32_t index : {-1, 3}) {
    EXPECT_EQ(ErrorOf([&] { rec.PropogatedMethod(index); }), kErrSubscript) << index;
  }
  EXPECT_THROW(CachedError().OutermostLine(), ZError);
}

TEST(CachedErrorTest, RaiseRethrowsEverythingAndNothingForNumberZero) {
  CachedError rec = ThroughThreeProcedures();
  std::optional<ZError> e = Raised([&] { rec.Raise(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Number(), 1234);
  EXPECT_EQ(e->Source(), rec.Source());
  EXPECT_EQ(e->Description(), "Disk on fire");
  EXPECT_EQ(e->HelpFile(), "zintra.chm");
  EXPECT_EQ(e->HelpContext(), 77);
  EXPECT_NO_THROW(CachedError().Raise());
}

TEST(CachedErrorTest, CloneIsIndependentAndClearEmptiesAll) {
  CachedError rec = ThroughThreeProcedures();
  CachedError copy = rec.Clone();
  EXPECT_EQ(copy, rec);
  rec.Clear();
  EXPECT_EQ(rec, CachedError());
  EXPECT_EQ(rec.Number(), 0);
  EXPECT_EQ(rec.Source(), "");
  EXPECT_EQ(copy.PropogationCount(), 3);
}

TEST(CachedErrorTest, ToStringLaysOutTheRecord) {
  CachedError rec(ZError(91, "Object not set", "Src"), "Mod", "Proc", 3);
  EXPECT_EQ(rec.toString(true),
            "An error occurred.  Details are below.\r\n\r\n"
            "Error Number: 91\r\nDescription: Object not set\r\n\r\n"
            "Source: Src\r\nPropogation Trail (for tech support): \r\nMod.Proc(3)");
  EXPECT_EQ(rec.toString(false),
            "Error Number: 91\r\nDescription: Object not set\r\n\r\n"
            "Source: Src\r\nPropogation Trail (for tech support): \r\nMod.Proc(3)");
}

TEST(CachedErrorTest, AFaultInTheCodeIsRecordedAsOneAndNeverAsTheSystemsOwnError) {
  std::vector<std::string> noted;
  ProgrammingErrorObserver previous =
      SetProgrammingErrorObserver([&](const std::string& text) { noted.push_back(text); });
  CachedError rec;
  try {
    std::vector<int> empty;
    (void)empty.at(3);
  } catch (...) {
    rec.SetToCurrentException("Mod", "Proc");
  }
  EXPECT_EQ(rec.Number(), 51);  // "Internal error", never a number the system raises
  EXPECT_EQ(rec.Description().rfind("Programming error: std::out_of_range: ", 0), 0u)
      << rec.Description();
  EXPECT_EQ(rec.PropogatedMethod(0), "Proc");
  try {
    throw 42;
  } catch (...) {
    rec.SetToCurrentException("Mod", "Proc");
  }
  EXPECT_EQ(rec.Description(), "Programming error: an exception of unknown type");
  EXPECT_EQ(noted.size(), 2u);
  // The platform running out of memory and the system's own errors are not faults.
  try {
    throw std::bad_alloc();
  } catch (...) {
    rec.SetToCurrentException("Mod", "Proc");
  }
  EXPECT_EQ(rec.Number(), 7);
  try {
    throw SampleError();
  } catch (...) {
    rec.SetToCurrentException("Mod", "Proc", 5);
  }
  EXPECT_EQ(rec.Source(), "ZintraAddin\r\n-->Mod.Proc(5)");
  try {
    throw ZError(91);
  } catch (...) {
    IgnoreCurrentException();
  }
  EXPECT_EQ(noted.size(), 2u);
  SetProgrammingErrorObserver(std::move(previous));
}

TEST(CachedErrorTest, ParenthesesInsideAProcedureNameAreNotALine) {
  CachedError rec(ZError(5), "Mod", "Get(x)");
  EXPECT_EQ(rec.PropogatedMethod(0), "Get(x)");
  EXPECT_EQ(rec.PropogatedLine(0), 0);
}

}  // namespace
}  // namespace zintra
