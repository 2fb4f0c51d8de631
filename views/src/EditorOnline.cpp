// What the editor does for the update check and the support report.
#include "analysis/OrvelScope.h"
#include "controls/MessageBox.h"
#include "core/Paths.h"
#include "frame/VardoCallback.h"
#include "online/SupportReport.h"
#include "online/UpdateCheck.h"
#include "views/OrvelScopeEditor.h"
#include "views/SystemInfo.h"
#include "views/SystemPage.h"

namespace Orvel {

namespace {
constexpr const char* kNoServer = "Updates are not checked: this build names no server.";
constexpr const char* kLooking = "Looking for a newer version...";
constexpr const char* kOtherWindow = "Another window of this program looks after updates.";
constexpr const char* kUpToDate = "This is the newest version.";
constexpr const char* kNewer = "A newer version is available.";
constexpr const char* kNoAnswer = "The update server does not answer.";
constexpr const char* kDownloadFailed = "The update could not be downloaded.";
constexpr const char* kReportFailed = "The support report could not be written to the desktop.";
} // namespace

void COrvelScopeEditor::startUpdateCheck() {
    if (surroundings_.updateServer.empty()) return;
    updateCheck_ = std::make_unique<Dorna::UpdateCheck>(surroundings_.updateServer);
    updateCheck_->setUp(surroundings_.product, surroundings_.webId, surroundings_.versionNumber);
    updateCheck_->SetInterfaceName(hostInterface());
    updateCheck_->setListener(this);
}

void COrvelScopeEditor::wireSystemPage() {
    if (surroundings_.updateServer.empty())
        systemPage_->setNoUpdatesReason(kNoServer);
    else
        systemPage_->setUpdateAction([this] { updatePressed(); });
    systemPage_->setSupportAction([this] { supportPressed(); });
}

std::string COrvelScopeEditor::hostInterface() const {
    const int kind =
        surroundings_.callback != nullptr ? surroundings_.callback->getInterfaceKind() : 0;
    return Vardo::interfaceName(kind);
}

void COrvelScopeEditor::openOnDesktop(const std::string& target) {
    if (surroundings_.openOnDesktop)
        surroundings_.openOnDesktop(target);
    else
        Core::openWithShell(target.c_str());
}

void COrvelScopeEditor::onIdle() {
    if (!updateCheck_) return;
    updateCheck_->Tick(this);
    // Another message may be open when a download ends.
    if (downloadDone_ && frame()->getModalView() == nullptr)
        downloadDone_ = !Sorel::CMessageBox::show(
            *frame(), "Download Done",
            "Download is Done. \nClose the host application and install the update.", {"OK"}, {});
}

// ---- the buttons of the system page

void COrvelScopeEditor::updatePressed() {
    if (!updateCheck_) return; // a picture
    if (const std::string address = updateCheck_->addressForBrowser(); !address.empty())
        openOnDesktop(address);
    if (updateCheck_->isDownloading()) return; // its progress is on show
    checkAsked_ = updateCheck_->checkNow();
    systemPage_->setStatus(checkAsked_ ? kLooking : kOtherWindow);
}

void COrvelScopeEditor::supportPressed() {
    const Dorna::ReportSubject subject{
        surroundings_.product, surroundings_.version,
        analyser_.blockSize(), double{analyser_.sampleRate()},
        hostInterface(),       Dorna::contentLocationText(Core::getContentLocation())};
    const std::filesystem::path report =
        Dorna::writeSupportReport(subject, *Dorna::makeSystemSources());
    systemPage_->setStatus(report.empty() ? kReportFailed : report.string());
    if (!report.empty()) openOnDesktop(report.parent_path().string());
}

// ---- from the update check

bool COrvelScopeEditor::askYesNo(const std::string& title,
                                 const std::string& text,
                                 std::function<void(bool yes)> answer) {
    if (frame()->getModalView() != nullptr) return false;
    return Sorel::CMessageBox::show(
        *frame(), title, text, {"Yes", "No"},
        [answer = std::move(answer)](int button) { answer(button == 0); });
}

// A check that nobody asked for only speaks when there is something to say.
void COrvelScopeEditor::checkEnded(CheckOutcome outcome) {
    const bool asked = std::exchange(checkAsked_, false);
    if (outcome == CheckOutcome::kUpdateExists)
        systemPage_->setStatus(kNewer);
    else if (asked)
        systemPage_->setStatus(outcome == CheckOutcome::kUpToDate ? kUpToDate : kNoAnswer);
}

void COrvelScopeEditor::downloadProgress(float fraction) {
    systemInfo_->showDownload(100.0 * double{fraction});
}

void COrvelScopeEditor::downloadEnded(const std::filesystem::path& file) {
    systemInfo_->endDownload();
    systemPage_->setStatus(file.empty() ? kDownloadFailed : file.string());
    downloadDone_ = !file.empty();
}

} // namespace Orvel
