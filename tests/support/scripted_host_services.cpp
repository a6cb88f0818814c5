#include "tests/support/scripted_host_services.h"

#include "platform/bxt/services.h"

namespace support {

TestServices::TestServices() {
    os::Services machine;
    machine.clock = clock;
    machine.keyStore = store;
    machine.workers = std::make_shared<SynchronousWorkers>(log);
    machine.debug = std::make_shared<FakeDebugOutput>(log);
    machine.files = files;
    machine.modules = modules;
    os::services() = machine;
    ui::services().toolkit = toolkit;
    HPS::services().importer = importer;
    bxtexchange::services() = scriptedExchange(comparer, log);
}

TestServices::~TestServices() {
    os::services() = {};
    ui::services() = {};
    HPS::services() = {};
    bxtexchange::services() = {};
    bxt::services() = {};
}

}  // namespace support
