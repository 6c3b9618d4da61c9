// The access layer over the simulated Outlook host, with the error handling writing
// to a recording log.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/files/memory_file_system.h"
#include "sim/mapi/sim_mapi_utils.h"
#include "sim/mapi/sim_outlook_host.h"
#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_folder.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "sim/ui/recording_msg_box.h"
#include "src/errors/error_handling.h"
#include "src/resources/string_table.h"
#include "tests/support/log_recorder.h"

namespace zintra::testing_support {

class OutlookTest : public testing::Test {
 protected:
  OutlookTest() {
    registry_.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Logging", "LogLevel", 3);
    builder_.Mailbox(sim::ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO"));
  }
  std::shared_ptr<Folder> F(const std::shared_ptr<sim::FolderRecord>& record) {
    return sim::MakeFolder(&host_.profile, record);
  }

  sim::SimOutlookHost host_;
  sim::ProfileBuilder builder_{host_.profile};
  sim::SimMapiUtils utils_{&host_.profile};
  sim::MemoryRegistry registry_;
  sim::MemoryFileSystem files_;
  sim::SimPlatform platform_;
  sim::RecordingMsgBox msg_box_;
  LogRecorder log_;
  StringTable strings_;
  ErrorHandling errors_{{log_, msg_box_, registry_, files_, platform_, strings_}};
};

}  // namespace zintra::testing_support
