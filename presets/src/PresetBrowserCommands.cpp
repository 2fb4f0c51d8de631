// What the items of the preset browser's menu do.
#include "PresetMenu.h"
#include "controls/FileSelector.h"
#include "core/Paths.h"
#include "presets/PresetBrowser.h"
#include "presets/PresetMessages.h"
#include "tree/Frame.h"

#include <utility>

namespace Sorel {

void CPresetBrowser::chosen(std::int32_t tag) {
    unreadable_.clear();
    if (tag >= kFirstPresetTag) {
        select(tag - kFirstPresetTag);
        return;
    }
    switch (static_cast<PresetCommand>(tag)) {
    case PresetCommand::kSave:
        return save();
    case PresetCommand::kSaveAs:
        return saveAs();
    case PresetCommand::kDelete:
        return presets_.DeletePreset(presets_.GetCurrentPresetIndex(), this,
                                     whileInWindow(&CPresetBrowser::afterDelete));
    case PresetCommand::kRename:
        return startRename();
    case PresetCommand::kGoToFolder:
        return Core::openWithShell(presets_.GetPresetFolder());
    case PresetCommand::kRestore:
        return presets_.RestoreFactoryPresets(this, whileInWindow(&CPresetBrowser::afterRestore));
    case PresetCommand::kDefault:
        return presets_.ResetToDefaultSettings();
    }
}

void CPresetBrowser::complain(const std::string& text) {
    pressed_ = Part::kNone; // the message has the mouse now
    PresetMessages::tell(this, text);
}

/// Goes on with `next`, unless the browser has left its window meanwhile.
PresetContinuation CPresetBrowser::whileInWindow(void (CPresetBrowser::*next)(bool)) {
    return [self = Counted<CPresetBrowser>(this), next](bool answer) {
        if (self->isAttached()) (self.get()->*next)(answer);
    };
}

// ---- Choosing a preset -------------------------------------------------------------------------

bool CPresetBrowser::select(int index) {
    const PresetEntry* entry = presets_.GetPresetEntry(index);
    if (entry == nullptr) return false;
    const std::string path = entry->path;
    const bool selected = presets_.SelectPreset(index);
    if (selected)
        showPreset(index);
    else
        complain("This preset cannot be read.\n" + path);
    setDirty(true);
    return selected;
}

/// The file's own name wins over the one inside it.
void CPresetBrowser::showPreset(int index) {
    const char* name = presets_.GetPresetName(index);
    if (name == nullptr) return;
    const std::string copy = name;
    presets_.SetPresetName(copy.c_str());
    setText(copy.c_str());
}

// ---- Saving ------------------------------------------------------------------------------------

void CPresetBrowser::save() {
    const std::string name = getText();
    const PresetEntry* current = presets_.GetPresetEntry(presets_.GetCurrentPresetIndex());
    if (current != nullptr && current->name == name) return saveTo(current->path, name);

    const std::string folder = current != nullptr ? std::string(presetFolderPart(current->path))
                                                  : std::string(presets_.GetPresetFolder());
    const std::string& extension = presets_.GetFileType().extension;
    const std::string plain(withoutPresetExtension(name, extension));
    const PresetNameProblem problem = presets_.FindNameProblem(folder, plain);
    if (problem == PresetNameProblem::kDefault) return saveAs(); // the settings have no name yet
    if (problem != PresetNameProblem::kNone) return complain(presetNameMessage(problem));
    saveTo(folder + plain + "." + extension, plain);
}

void CPresetBrowser::saveAs() {
    if (fileSelector_ && fileSelector_->isOpen()) return;
    FileDialogRequest request;
    request.style = FileDialogRequest::Style::kSave;
    request.title = "Save Preset as...";
    request.extensions = {presets_.GetFileType()};
    request.initialPath = presets_.GetPresetFolder();
    request.defaultSaveName = presets_.GetCurrentPresetName();
    fileSelector_ = std::make_unique<CFileSelector>(*getFrame(), std::move(request));
    fileSelector_->run([self = Counted<CPresetBrowser>(this)](const FileDialogAnswer& answer) {
        if (self->isAttached()) self->saveChosenFile(answer);
    });
}

void CPresetBrowser::saveChosenFile(const FileDialogAnswer& answer) {
    if (!answer.problem.empty()) return complain(answer.problem);
    if (answer.paths.empty()) return;
    const std::string& extension = presets_.GetFileType().extension;
    const std::string path =
        presetPath(answer.paths.front(), PresetPlace::kComplete, "", extension);
    const std::string name(presetBaseName(path));
    const PresetNameProblem problem =
        presets_.FindNameProblem(std::string(presetFolderPart(path)), name);
    if (problem != PresetNameProblem::kNone) return complain(presetNameMessage(problem));
    saveTo(path, name);
}

/// `path` is complete: what the question is about is what is written.
void CPresetBrowser::saveTo(const std::string& path, const std::string& name) {
    const auto go = [self = Counted<CPresetBrowser>(this), path, name](bool yes) {
        if (!yes || !self->isAttached()) return;
        IPresetBrowserInterface& presets = self->presets_;
        if (!presets.SavePreset(path.c_str(), PresetPlace::kComplete))
            return self->complain("Some error occurred while saving Preset!\n" + path);
        presets.SetPresetName(name.c_str());
        self->setText(name.c_str());
        // What is saved where the list does not reach is no entry, and neither is the old one then.
        presets.SelectPresetByName(nullptr, PresetPlace::kComplete);
        presets.SelectPresetByName(path.c_str(), PresetPlace::kComplete);
    };
    presets_.ConfirmOverwrite(path.c_str(), PresetPlace::kComplete, this, go);
}

// ---- Renaming ----------------------------------------------------------------------------------

void CPresetBrowser::startRename() {
    const char* current = presets_.GetPresetName(presets_.GetCurrentPresetIndex());
    if (current == nullptr || getParentView() == nullptr || isTyping()) return;
    nameBeforeTyping_ = getText();
    name_->setText(current);
    name_->retain(); // the parent's
    if (!getParentView()->addView(name_.get())) {
        name_->release();
        return;
    }
    getFrame()->setFocusView(name_.get());
    if (!name_->isEditing()) finishTyping(); // no box could be opened
    setDirty(true);
}

void CPresetBrowser::finishTyping() {
    const bool committed = name_->wasCommitted();
    const std::string typed = name_->getText();
    if (CViewContainer* parent = name_->getParentView(); parent != nullptr)
        if (parent->isChild(name_.get())) parent->removeView(name_.get(), true);
    name_->setText(nameBeforeTyping_.c_str());
    setDirty(true);
    if (committed) rename(typed);
}

void CPresetBrowser::rename(const std::string& name) {
    const PresetEntry* current = presets_.GetPresetEntry(presets_.GetCurrentPresetIndex());
    if (current == nullptr) return;
    const std::string folder(presetFolderPart(current->path));
    const std::string plain(withoutPresetExtension(name, presets_.GetFileType().extension));
    switch (presets_.RenameCurrentPreset(name.c_str())) {
    case RenameResult::kDone:
        setText(plain.c_str());
        reportValue();
        break;
    case RenameResult::kNoPreset:
        break;
    case RenameResult::kNameRefused:
        complain(presetNameMessage(presets_.FindNameProblem(folder, plain)));
        break;
    case RenameResult::kExists:
        complain("A preset \"" + plain + "\" exists already.\nThe preset keeps its name.");
        break;
    case RenameResult::kFailed:
        complain("Some error occurred while renaming Preset!\n" + plain);
        break;
    }
}

// ---- After questions ---------------------------------------------------------------------------

void CPresetBrowser::afterDelete(bool done) {
    if (!done) complain("Some error occurred while deleting Preset!");
    setDirty(true);
}

void CPresetBrowser::afterRestore(bool done) {
    if (!done)
        complain(std::string("Some error occurred while saving Preset!\n") +
                 presets_.GetPresetFolder());
    presets_.RescanPresets();
    setDirty(true);
}

} // namespace Sorel
