#include "win32/outlook/com_mapi_utils.h"

#include "win32/com/outlook_events.h"
#include "win32/outlook/com_rdo_session.h"

namespace zintra::win32 {

namespace ev = outlook_events;

ComMapiUtils::ComMapiUtils(const ComPtr<IDispatch>& object)
    : ComAdapter(DispatchClient(object, "TovuMAPIUtils")),
      events_(
          client_, DefaultSourceOf(object.Get(), ev::kMapiUtilsEvents),
          [this](DISPID id, const EventArgs& args) {
            if (id == ev::kMapiUtilsNewMail) NewMail.Raise(args.ValueAt(0).ToString());
          },
          "TovuMAPIUtils.NewMail") {
  events_.Watch(NewMail);
}

void ComMapiUtils::SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) {
  SetMapiObjectOf(client_, session);
}

int32_t ComMapiUtils::GetIDsFromNames(const std::shared_ptr<MapiObject>& object,
                                      const std::string& guid, const Value& name, bool create) {
  return client_
      .Call("GetIDsFromNames", {ObjectArg(object, "TovuMAPIUtils.GetIDsFromNames"),
                                Arg(Value(guid)), Arg(name), Arg(Value(create))})
      .ToValue()
      .ToLong();
}

Value ComMapiUtils::HrGetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag) {
  return client_
      .Call("HrGetOneProp", {ObjectArg(object, "TovuMAPIUtils.HrGetOneProp"), Arg(Value(prop_tag))})
      .ToValue();
}

void ComMapiUtils::HrSetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag,
                                const Value& value, bool save) {
  client_.Call("HrSetOneProp", {ObjectArg(object, "TovuMAPIUtils.HrSetOneProp"),
                                Arg(Value(prop_tag)), Arg(value), Arg(Value(save))});
}

void ComMapiUtils::HrDeleteOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag,
                                   bool save) {
  client_.Call("HrDeleteOneProp", {ObjectArg(object, "TovuMAPIUtils.HrDeleteOneProp"),
                                   Arg(Value(prop_tag)), Arg(Value(save))});
}

bool ComMapiUtils::CompareIDs(const std::string& entry_id1, const std::string& entry_id2) {
  return client_.Call("CompareIDs", {Arg(Value(entry_id1)), Arg(Value(entry_id2))})
      .ToValue()
      .ToBool();
}

}  // namespace zintra::win32
