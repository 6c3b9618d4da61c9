#include "tests/win32/outlook/served_profile.h"

#include "win32/outlook/com_object_factory.h"
#include "win32/outlook/wrap.h"
#include "win32/sim_server/dispatch_object.h"
#include "win32/sim_server/serve.h"

namespace zintra::win32::testing {

ServedProfile::ServedProfile() {
  build.Mailbox(sim::ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO"));
  contacts = build.ContactFolder("Customers");
  build.Contact(contacts, {"Ann Lee", {"ann@fabrikam.com", "ann.lee@home.net"}, "Customers"});
  build.Contact(contacts, {"Bo Chen", {"bo@fabrikam.com"}});
  build.MailFrom(sim::ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"),
                 {"Quote", "Prices as agreed.", 45000.5});
  build.MailFrom(sim::ProfileBuilder::Smtp("Bo Chen", "bo@fabrikam.com"),
                 {"Caf\xc3\xa9 order", "Two boxes.", 45001.25});
  build.MailTo({sim::ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com")}, {"Re: Quote"});
  sim_app = std::make_shared<sim::SimOlApplication>(&profile);
  classes.RegisterLibrary();
  app = Wrap<Application>(Serve(sim_app));
}

ServedProfile::~ServedProfile() { app.reset(); }

std::shared_ptr<AutomationObject> ServedProfile::Library(const std::string& class_name) {
  std::string prog_id = "TovuRedemption." + class_name;
  return ComObjectFactory::WrapByProgId(prog_id, Serve(classes.CreateObject(prog_id)));
}

size_t ServedProfile::Sinks(const AutomationObject& adapter, const IID& iid) {
  ComPtr<DispatchObject> served = Served(adapter);
  return served ? served->SinkCount(iid) : 0;
}

ComPtr<DispatchObject> ServedProfile::Served(const AutomationObject& adapter) {
  ComAdapter* com = AdapterOf(&adapter);
  DispatchObject* served = nullptr;
  if (!com || FAILED(com->Object()->QueryInterface(kIidDispatchObject,
                                                   reinterpret_cast<void**>(&served)))) {
    return {};
  }
  return ComPtr<DispatchObject>::Attach(served);
}

}  // namespace zintra::win32::testing
