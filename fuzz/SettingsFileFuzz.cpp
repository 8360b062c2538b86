// Any settings file loads. Loaded settings survive being written and read again.

#include <fstream>
#include <nlohmann/json.hpp>

#include "Core/ConfigStore.h"
#include "Fuzzing.h"
#include "SilentLog.h"
#include "support/TemporaryDirectory.h"

FUZZ_TARGET(std::string_view file) {
  static const SilentLog silentLog;
  static const test::TemporaryDirectory directory;
  static const ConfigStore store(directory.path());
  {
    std::ofstream stream(store.configURL(), std::ios::binary | std::ios::trunc);
    stream.write(file.data(), static_cast<std::streamsize>(file.size()));
    require(stream.good(), "the settings file can be written");
  }
  const AppConfig config = store.load();
  const std::string written = nlohmann::json(config).dump();
  require(nlohmann::json::parse(written).get<AppConfig>() == config, "written settings read the same");
}
