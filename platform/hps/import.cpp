#include "platform/hps/import.h"

#include "platform/hps/exception.h"
#include "platform/hps/services.h"

namespace HPS {

Services& services() {
    static Services installed;
    return installed;
}

IOResult IONotifier::Status(float& fraction) const {
    if (!task_) {
        fraction = 0.0F;
        return IOResult::Failure;
    }
    return task_->status(fraction);
}

namespace Exchange {

CADModel ImportNotifier::GetCADModel() const {
    return task_ ? CADModel(task_->model()) : CADModel();
}

ImportCause ImportNotifier::GetCause() const {
    return task_ ? task_->cause() : ImportCause();
}

void ImportNotifier::Cancel() const {
    if (task_) task_->cancel();
}

ImportNotifier File::Import(const char* path, const ImportOptionsKit& options) {
    const auto& importer = services().importer;
    if (!importer) throw Exception("no importer is installed");
    return ImportNotifier(importer->start(path, options.Options()));
}

}  // namespace Exchange
}  // namespace HPS
