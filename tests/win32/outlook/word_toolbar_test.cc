// Word and the toolbar library through automation objects of the tests' own over the
// simulated Word and toolbar library: member names, arguments, error numbers and the
// helper's events as the adapters see them.
#include <gtest/gtest.h>

#include "sim/files/memory_file_system.h"
#include "sim/toolbars/sim_toolbar_helper.h"
#include "sim/word/sim_word.h"
#include "tests/win32/outlook/served_profile.h"
#include "win32/com/outlook_events.h"
#include "win32/outlook/com_toolbar_library.h"
#include "win32/outlook/com_word.h"
#include "win32/sim_server/dispatch_args.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32::testing {
namespace {

namespace ev = outlook_events;

ComPtr<IDispatch> Served(const char* type, const std::shared_ptr<AutomationObject>& target,
                         const std::function<void(DispatchObject&)>& members) {
  if (!target) return {};
  ComPtr<DispatchObject> d = DispatchObject::Create(type, target);
  members(*d.Get());
  return ComPtr<IDispatch>(d->AsDispatch());
}

Variant Obj(const ComPtr<IDispatch>& object) { return Variant(object); }

ComPtr<IDispatch> ServeVariable(const std::shared_ptr<WordVariable>& p) {
  return Served("Variable", p, [p](DispatchObject& d) {
    d.Member("Name", [p](const DispatchArgs&) { return Ret(p->Name()); });
    d.Member(
        "Value", [p](const DispatchArgs&) { return Ret(p->Value()); },
        [p](const DispatchArgs& a) { p->SetValue(a.PutAsValue().ToString()); });
    d.Member("Delete", [p](const DispatchArgs&) {
      p->Delete();
      return Nothing();
    });
  });
}

ComPtr<IDispatch> ServeDocument(const std::shared_ptr<WordDocument>& p) {
  return Served("Document", p, [p](DispatchObject& d) {
    d.Member("Name", [p](const DispatchArgs&) { return Ret(p->Name()); });
    d.Member("FullName", [p](const DispatchArgs&) { return Ret(p->FullName()); });
    d.Member(
        "Saved", [p](const DispatchArgs&) { return Ret(p->Saved()); },
        [p](const DispatchArgs& a) { p->SetSaved(a.PutAsValue().ToBool()); });
    d.Member("SaveAs", [p](const DispatchArgs& a) {
      p->SaveAs(a.Text(0), a.Long(1, kWdFormatDocument));
      return Nothing();
    });
    d.Member("Close", [p](const DispatchArgs& a) {
      p->Close(a.Long(0, kWdDoNotSaveChanges));
      return Nothing();
    });
    d.Member("Variables", [p](const DispatchArgs&) {
      auto vars = p->Variables();
      return Obj(Served("Variables", vars, [vars](DispatchObject& v) {
        v.Member("Count", [vars](const DispatchArgs&) { return Ret(vars->Count()); });
        v.Member("Item", [vars](const DispatchArgs& a) {
          return Obj(ServeVariable(vars->Item(a.Text(0))));
        });
        v.Member("Add", [vars](const DispatchArgs& a) {
          return Obj(ServeVariable(vars->Add(a.Text(0), a.Text(1))));
        });
      }));
    });
  });
}

ComPtr<IDispatch> ServeWord(const std::shared_ptr<WordApplication>& p) {
  return Served("Application", p, [p](DispatchObject& d) {
    d.Member(
        "Visible", [p](const DispatchArgs&) { return Ret(p->Visible()); },
        [p](const DispatchArgs& a) { p->SetVisible(a.PutAsValue().ToBool()); });
    d.Member("Activate", [p](const DispatchArgs&) {
      p->Activate();
      return Nothing();
    });
    d.Member("Options", [p](const DispatchArgs&) {
      return Obj(Served("Options", p, [p](DispatchObject& o) {
        o.Member("DefaultFilePath",
                 [p](const DispatchArgs& a) { return Ret(p->DefaultFilePath(a.Long(0))); });
      }));
    });
    d.Member("Documents", [p](const DispatchArgs&) {
      auto docs = p->Documents();
      return Obj(Served("Documents", docs, [docs](DispatchObject& v) {
        v.Member("Count", [docs](const DispatchArgs&) { return Ret(docs->Count()); });
        v.Member("Item", [docs](const DispatchArgs& a) {
          return Obj(ServeDocument(docs->Item(a.Long(0))));
        });
        v.Member("Add", [docs](const DispatchArgs& a) {
          return Obj(ServeDocument(docs->Add(a.Text(0))));
        });
      }));
    });
  });
}

TEST(WordTest, ALetterIsMadeFromATemplateWithItsVariables) {
  sim::MemoryFileSystem files;
  files.AddFile("C:\\Templates\\Letter.dot", "Dear ");
  files.AddFolder("C:\\Letters");
  sim::SimWord word(files);
  ComWordApplication app(ServeWord(word.Application()));
  EXPECT_EQ(app.DefaultFilePath(kWdUserTemplatesPath), "C:\\Templates");
  app.SetVisible(true);
  EXPECT_TRUE(word.running()->Visible());
  auto doc = app.Documents()->Add("C:\\Templates\\Letter.dot");
  EXPECT_EQ(doc->Name(), "Document1");
  doc->Variables()->Add("ContactEntryID", "00AB");
  EXPECT_EQ(doc->Variables()->Item("contactentryid")->Value(), "00AB");
  EXPECT_EQ(ErrorOf([&] { doc->Variables()->Item("Missing"); }), kWordObjectDeleted);
  EXPECT_EQ(ErrorOf([&] { doc->Variables()->Add("ContactEntryID", "x"); }), kWordNameInUse);
  doc->SaveAs("C:\\Letters\\Ann.doc", kWdFormatDocument);
  EXPECT_EQ(files.Contents("C:\\Letters\\Ann.doc"), "Dear ");
  EXPECT_TRUE(doc->Saved());
  doc->Close(kWdDoNotSaveChanges);
  EXPECT_EQ(ErrorOf([&] { doc->Name(); }), kWordObjectDeleted);
  EXPECT_EQ(ErrorOf([&] { app.Documents()->Add("C:\\Templates\\None.dot"); }), kWordCannotOpen);
}

ComPtr<IDispatch> ServeHelper(const std::shared_ptr<ToolbarHelper>& p) {
  return Served("ToolbarHelper", p, [p](DispatchObject& d) {
    d.Member("Initialize", [p](const DispatchArgs& a) {
      p->Initialize(a.ObjectAs<Application>(0), a.Text(1));
      return Nothing();
    });
    d.Member("DeclareBar", [p](const DispatchArgs& a) {
      p->DeclareBar(a.Long(0), a.Text(1));
      return Nothing();
    });
    d.Member("DeclareButton", [p](const DispatchArgs& a) {
      p->DeclareButton(a.Long(0), a.Text(1), a.Text(2), a.Long(3), a.Bool(4, true));
      return Nothing();
    });
    DispatchObject* raw = &d;
    d.Source(ev::kToolbarHelperEvents);
    d.Keep(p->BarCreated.Connect([raw](std::shared_ptr<CommandBar> bar) {
      FireObject(raw, ev::kToolbarHelperEvents, ev::kBarCreated, bar);
    }));
    d.Keep(p->ControlCreated.Connect([raw](std::shared_ptr<CommandBarControl> control) {
      FireObject(raw, ev::kToolbarHelperEvents, ev::kControlCreated, control);
    }));
    d.Keep(p->ButtonClicked.Connect(
        [raw](std::shared_ptr<CommandBarControl> control, std::shared_ptr<OutlookWindow> window) {
          std::vector<Variant> args;
          args.push_back(ServeVariant(control));
          args.push_back(ServeVariant(window));
          raw->Fire(ev::kToolbarHelperEvents, ev::kButtonClicked, args);
        }));
  });
}

TEST(ToolbarLibraryTest, DeclaredBarsArriveAndClicksNameTheirWindow) {
  ServedProfile p;
  p.sim_app->OpenExplorer(p.build.Default(kOlFolderInbox));
  auto sim_helper = std::make_shared<sim::SimToolbarHelper>();
  ComToolbarHelper helper(ServeHelper(sim_helper));
  std::vector<std::string> seen;
  Connection bars = helper.BarCreated.Connect([&](std::shared_ptr<CommandBar> bar) {
    auto parent = bar->Parent();
    auto window = std::dynamic_pointer_cast<Explorer>(parent);
    seen.push_back("bar " + bar->Name() + " in " +
                   (window   ? window->CurrentFolder()->Name()
                    : parent ? parent->TypeName()
                             : std::string("nothing")));
  });
  Connection controls =
      helper.ControlCreated.Connect([&](std::shared_ptr<CommandBarControl> control) {
        control->SetCaption("Log it");
        seen.push_back("button " + control->Tag());
      });
  Connection clicks = helper.ButtonClicked.Connect(
      [&](std::shared_ptr<CommandBarControl> control, std::shared_ptr<OutlookWindow> window) {
        seen.push_back("click " + control->Caption() + " in " +
                       (window ? window->TypeName() : std::string("nothing")));
      });
  helper.Initialize(p.app, "Zintra");
  helper.DeclareBar(kToolbarKindExplorer, "Zintra");
  helper.DeclareButton(kToolbarKindExplorer, "Zintra", "ZintraLog", kMsoButtonCaption, true);
  EXPECT_EQ(ErrorOf([&] { helper.DeclareBar(7, "Other"); }), kErrInvalidCall);

  auto explorer = p.app->ActiveExplorer();
  auto button =
      explorer->CommandBars()->Item("Zintra")->FindControl(0, 0, "ZintraLog", false, false);
  ASSERT_TRUE(button);
  button->Execute();
  EXPECT_EQ(seen, (std::vector<std::string>{"bar Zintra in Inbox", "button ZintraLog",
                                            "click Log it in Explorer"}));
}

}  // namespace
}  // namespace zintra::win32::testing
