#pragma once

#include <memory>

#include "tests/support/fake_os.h"
#include "tests/support/fake_ui.h"
#include "tests/support/scripted_host_exchange.h"

namespace support {

/// All fakes of one test behind the platform's registries for as long as it lives. Workers are
/// synchronous until the test installs others.
class TestServices {
public:
    TestServices();
    ~TestServices();
    TestServices(const TestServices&) = delete;
    TestServices& operator=(const TestServices&) = delete;

    template <typename Workers>
    std::shared_ptr<Workers> useWorkers() {
        auto workers = std::make_shared<Workers>(log);
        os::services().workers = workers;
        return workers;
    }

    Log log = std::make_shared<CallLog>();
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>(log);
    std::shared_ptr<FakeKeyStore> store = std::make_shared<FakeKeyStore>(log);
    std::shared_ptr<FakeFiles> files = std::make_shared<FakeFiles>(log);
    std::shared_ptr<FakeModules> modules = std::make_shared<FakeModules>(log);
    std::shared_ptr<FakeToolkit> toolkit = std::make_shared<FakeToolkit>(log);
    std::shared_ptr<FakeImporter> importer = std::make_shared<FakeImporter>(log);
    std::shared_ptr<ComparerScript> comparer = std::make_shared<ComparerScript>();
};

}  // namespace support
