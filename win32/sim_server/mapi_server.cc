// Members of the MAPI library's objects: the utility object, contents tables, safe
// items and inspector, the session with its folders and messages, address entries.
#include <vector>

#include "src/core/z_error.h"
#include "win32/com/com_error.h"
#include "win32/com/outlook_events.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32 {
namespace {

// The library's object properties take `Set x.Item = ...` and `x.Item = ...` alike.
constexpr DispatchObject::PutKind kEither = DispatchObject::PutKind::kEither;

// "Fields(tag)", read-only.
template <typename T>
void FieldsReader(DispatchObject& d, const std::shared_ptr<T>& p) {
  d.Member("Fields", [p](const DispatchArgs& a) { return Ret(p->Fields(a.Long(0))); });
}

// "Fields(tag)", read and written.
template <typename T>
void FieldsMember(DispatchObject& d, const std::shared_ptr<T>& p) {
  d.Member(
      "Fields", [p](const DispatchArgs& a) { return Ret(p->Fields(a.Long(0))); },
      [p](const DispatchArgs& a) { p->SetFields(a.Long(0), a.PutAsValue()); });
}

// A property tag list: an array of numbers (of any integer or variant element), or
// one number.
std::vector<int32_t> TagsOf(const VARIANT& in) {
  const VARIANT& v = in.vt == (VT_BYREF | VT_VARIANT) ? *in.pvarVal : in;
  if (!(v.vt & VT_ARRAY)) return {ValueOf(v).ToLong()};
  SAFEARRAY* sa = (v.vt & VT_BYREF) ? *v.pparray : v.parray;
  if (!sa || SafeArrayGetDim(sa) != 1) throw ZError(kErrTypeMismatch, "Type mismatch");
  LONG lower = 0, upper = -1;
  SafeArrayGetLBound(sa, 1, &lower);
  SafeArrayGetUBound(sa, 1, &upper);
  std::vector<int32_t> tags;
  for (LONG i = lower; i <= upper; ++i) {
    Variant element;
    VARTYPE type = static_cast<VARTYPE>(v.vt & VT_TYPEMASK);
    if (type == VT_VARIANT) {
      CheckHr(SafeArrayGetElement(sa, &i, element.Get()), "Columns");
    } else if (type == VT_I4 || type == VT_UI4 || type == VT_INT) {
      element.Get()->vt = VT_I4;
      CheckHr(SafeArrayGetElement(sa, &i, &element.Get()->lVal), "Columns");
    } else {
      throw ZError(kErrTypeMismatch, "Type mismatch");
    }
    tags.push_back(element.ToValue().ToLong());
  }
  return tags;
}

// A one-dimensional array of variants, taking over `items`.
Variant VariantArray(std::vector<Variant>& items) {
  SAFEARRAY* sa = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(items.size()));
  if (!sa) throw ZError(static_cast<int32_t>(E_OUTOFMEMORY), "Out of memory");
  for (LONG i = 0; i < static_cast<LONG>(items.size()); ++i) {
    SafeArrayPutElement(sa, &i, items[static_cast<size_t>(i)].Get());  // copies
  }
  Variant result;
  result.Get()->vt = VT_ARRAY | VT_VARIANT;
  result.Get()->parray = sa;
  return result;
}

Variant ErrorValue(int32_t code) {
  Variant v;
  v.Get()->vt = VT_ERROR;
  v.Get()->scode = code;
  return v;
}

Variant RowsValue(const MapiRows& rows) {
  if (rows.IsError()) return ErrorValue(rows.error);
  std::vector<Variant> out;
  for (const MapiRow& row : rows.rows) {
    if (row.IsError()) {
      out.push_back(ErrorValue(row.error));
      continue;
    }
    std::vector<Variant> cells;
    for (const MapiCell& cell : row.cells) {
      cells.push_back(cell.IsError() ? ErrorValue(cell.error) : Variant(cell.value));
    }
    out.push_back(VariantArray(cells));
  }
  return VariantArray(out);
}

}  // namespace

void AddAddressEntry(DispatchObject& d, const std::shared_ptr<AddressEntry>& p) {
  d.Member("Name", [p](const DispatchArgs&) { return Ret(p->Name()); });
  d.Member("Address", [p](const DispatchArgs&) { return Ret(p->Address()); });
  d.Member("Type", [p](const DispatchArgs&) { return Ret(p->Type()); });
  d.Member("ID", [p](const DispatchArgs&) { return Ret(p->ID()); });
  FieldsReader(d, p);
}

void AddAddressList(DispatchObject& d, const std::shared_ptr<AddressList>& p) {
  d.Member("Name", [p](const DispatchArgs&) { return Ret(p->Name()); });
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
}

void AddAddressLists(DispatchObject& d, const std::shared_ptr<AddressLists>& p) {
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
}

void AddMapiUtils(DispatchObject& d, const std::shared_ptr<MapiUtils>& p) {
  d.Member(
      "MAPIOBJECT", [](const DispatchArgs&) { return Nothing(); },
      [p](const DispatchArgs& a) { p->SetMAPIOBJECT(a.PutObjectAs<MapiObject>()); }, kEither);
  d.Member("GetIDsFromNames", [p](const DispatchArgs& a) {
    return Ret(
        p->GetIDsFromNames(a.ObjectAs<MapiObject>(0), a.Text(1), a.Get(2), a.Bool(3, false)));
  });
  d.Member("HrGetOneProp", [p](const DispatchArgs& a) {
    return Ret(p->HrGetOneProp(a.ObjectAs<MapiObject>(0), a.Long(1)));
  });
  d.Member("HrSetOneProp", [p](const DispatchArgs& a) {
    p->HrSetOneProp(a.ObjectAs<MapiObject>(0), a.Long(1), a.Get(2), a.Bool(3, false));
    return Nothing();
  });
  d.Member("HrDeleteOneProp", [p](const DispatchArgs& a) {
    p->HrDeleteOneProp(a.ObjectAs<MapiObject>(0), a.Long(1), a.Bool(2, false));
    return Nothing();
  });
  d.Member("CompareIDs",
           [p](const DispatchArgs& a) { return Ret(p->CompareIDs(a.Text(0), a.Text(1))); });
  d.Member("Cleanup", [p](const DispatchArgs&) {
    p->Cleanup();
    return Nothing();
  });
  DispatchObject* raw = &d;
  d.Source(outlook_events::kMapiUtilsEvents);
  d.Keep(p->NewMail.Connect([raw](std::string entry_id) {
    std::vector<Variant> args;
    args.push_back(Ret(entry_id));
    raw->Fire(outlook_events::kMapiUtilsEvents, outlook_events::kMapiUtilsNewMail, args);
  }));
}

void AddMapiTable(DispatchObject& d, const std::shared_ptr<MapiTable>& p) {
  d.Member(
      "Item", [](const DispatchArgs&) { return Nothing(); },
      [p](const DispatchArgs& a) { p->SetItem(a.PutObject()); }, kEither);
  d.Member(
      "Columns",
      [p](const DispatchArgs&) {
        std::vector<Variant> tags;
        for (int32_t tag : p->Columns()) tags.push_back(Ret(tag));
        return VariantArray(tags);
      },
      [p](const DispatchArgs& a) { p->SetColumns(TagsOf(a.PutValue())); });
  d.Member("RowCount", [p](const DispatchArgs&) { return Ret(p->RowCount()); });
  d.Member("GoToFirst", [p](const DispatchArgs&) {
    p->GoToFirst();
    return Nothing();
  });
  d.Member("GetRows", [p](const DispatchArgs& a) { return RowsValue(p->GetRows(a.Long(0))); });
}

void AddSafeItem(DispatchObject& d, const std::shared_ptr<SafeItem>& p) {
  d.Member(
      "Item", [p](const DispatchArgs&) { return ServeVariant(p->Item()); },
      [p](const DispatchArgs& a) { p->SetItem(a.PutObjectAs<Item>()); }, kEither);
  d.Member("Sender", [p](const DispatchArgs&) { return ServeVariant(p->Sender()); });
  d.Member("Recipients", [p](const DispatchArgs&) { return ServeVariant(p->Recipients()); });
  d.Member("Body", [p](const DispatchArgs&) { return Ret(p->Body()); });
  FieldsMember(d, p);
  d.Member("CopyTo", [p](const DispatchArgs& a) { return ServeVariant(p->CopyTo(a.Object(0))); });
}

void AddSafeInspector(DispatchObject& d, const std::shared_ptr<SafeInspector>& p) {
  d.Member(
      "Item", [p](const DispatchArgs&) { return ServeVariant(p->Item()); },
      [p](const DispatchArgs& a) { p->SetItem(a.PutObjectAs<Inspector>()); }, kEither);
  d.Member("Hwnd", [p](const DispatchArgs&) { return Ret(p->Hwnd()); });
}

void AddRdoSession(DispatchObject& d, const std::shared_ptr<RdoSession>& p) {
  d.Member(
      "MAPIOBJECT", [p](const DispatchArgs&) { return ServeVariant(p->MAPIOBJECT()); },
      [p](const DispatchArgs& a) { p->SetMAPIOBJECT(a.PutObjectAs<MapiObject>()); }, kEither);
  d.Member("LoggedOn", [p](const DispatchArgs&) { return Ret(p->LoggedOn()); });
  d.Member("CurrentUser", [p](const DispatchArgs&) { return ServeVariant(p->CurrentUser()); });
  d.Member("GetMessageFromID", [p](const DispatchArgs& a) {
    return ServeVariant(p->GetMessageFromID(a.Text(0), a.Text(1, "")));
  });
  d.Member("GetFolderFromID", [p](const DispatchArgs& a) {
    return ServeVariant(p->GetFolderFromID(a.Text(0), a.Text(1, "")));
  });
  d.Member("GetDefaultFolder",
           [p](const DispatchArgs& a) { return ServeVariant(p->GetDefaultFolder(a.Long(0))); });
  d.Member("AddressLists", [p](const DispatchArgs&) { return ServeVariant(p->AddressLists()); });
}

void AddRdoFolder(DispatchObject& d, const std::shared_ptr<RdoFolder>& p) {
  d.Member(
      "MAPIOBJECT", [p](const DispatchArgs&) { return ServeVariant(p->MAPIOBJECT()); },
      [p](const DispatchArgs& a) { p->SetMAPIOBJECT(a.PutObjectAs<MapiObject>()); }, kEither);
  d.Member("Name", [p](const DispatchArgs&) { return Ret(p->Name()); });
  d.Member("EntryID", [p](const DispatchArgs&) { return Ret(p->EntryID()); });
  d.Member("StoreID", [p](const DispatchArgs&) { return Ret(p->StoreID()); });
  d.Member("DefaultItemType", [p](const DispatchArgs&) { return Ret(p->DefaultItemType()); });
  d.Member("Parent", [p](const DispatchArgs&) { return ServeVariant(p->Parent()); });
  d.Member("ItemCount", [p](const DispatchArgs&) { return Ret(p->ItemCount()); });
  FieldsReader(d, p);
  d.Member("AddItem",
           [p](const DispatchArgs& a) { return ServeVariant(p->AddItem(a.Text(0, "IPM.Note"))); });
}

void AddRdoMessage(DispatchObject& d, const std::shared_ptr<RdoMessage>& p) {
  d.Member("EntryID", [p](const DispatchArgs&) { return Ret(p->EntryID()); });
  d.Member("StoreID", [p](const DispatchArgs&) { return Ret(p->StoreID()); });
  d.Member("MessageClass", [p](const DispatchArgs&) { return Ret(p->MessageClass()); });
  d.Member(
      "Subject", [p](const DispatchArgs&) { return Ret(p->Subject()); },
      [p](const DispatchArgs& a) { p->SetSubject(a.PutAsValue().ToString()); });
  d.Member(
      "Body", [p](const DispatchArgs&) { return Ret(p->Body()); },
      [p](const DispatchArgs& a) { p->SetBody(a.PutAsValue().ToString()); });
  d.Member("Parent", [p](const DispatchArgs&) { return ServeVariant(p->Parent()); });
  FieldsMember(d, p);
  d.Member("UserProperties",
           [p](const DispatchArgs&) { return ServeVariant(p->UserProperties()); });
  d.Member("Recipients", [p](const DispatchArgs&) { return ServeVariant(p->Recipients()); });
  d.Member("Attachments", [p](const DispatchArgs&) { return ServeVariant(p->Attachments()); });
  d.Member("Sender", [p](const DispatchArgs&) { return ServeVariant(p->Sender()); });
  d.Member("Save", [p](const DispatchArgs&) {
    p->Save();
    return Nothing();
  });
  d.Member("Delete", [p](const DispatchArgs&) {
    p->Delete();
    return Nothing();
  });
  d.Member("CopyTo", [p](const DispatchArgs& a) { return ServeVariant(p->CopyTo(a.Object(0))); });
  d.Member("Move", [p](const DispatchArgs& a) { return ServeVariant(p->Move(a.Object(0))); });
  d.Member("MAPIOBJECT", [p](const DispatchArgs&) { return ServeVariant(p->MAPIOBJECT()); });
}

}  // namespace zintra::win32
