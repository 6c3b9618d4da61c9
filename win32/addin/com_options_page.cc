#include "win32/addin/com_options_page.h"

#include "win32/addin/options_page_link.h"

namespace zintra::win32 {

void ComOptionsPage::Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) {
  client_.Call("Initialize", {Variant(OptionsPageLink::Create(AddinApp))});
}

}  // namespace zintra::win32
