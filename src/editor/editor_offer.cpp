#include "editor/editor_offer.h"

#include "editor/editor_state.h"

namespace vantrel {

CropWindowActions actionsOn(EditorState& editorState) {
  EditorState* const state = &editorState;
  CropWindowActions actions;
  actions.fit = [state] { state->requestFit(); };
  actions.actualSize = [state] { state->requestActualSize(); };
  actions.zoomIn = [state] { state->requestZoomStep(true); };
  actions.zoomOut = [state] { state->requestZoomStep(false); };
  actions.preview = [state] { state->setPreviewOnly(!state->previewOnly()); };
  actions.inspector = [state] { state->toggleInspector(); };
  actions.resetCrop = [state] {
    EditHistory& history = state->history();
    history.setCrop(CropMargins::fullImage(state->sourceSize(), history.pixelStep()));
  };
  actions.matchBitrate = [state] { state->history().setBitrate(state->originalBitrate()); };
  actions.canOpen = !state->busy();
  actions.canExport = state->canExport();
  actions.canEdit = state->loaded() && !state->busy();
  actions.isImage = state->isImage();
  actions.canMatchBitrate = actions.canEdit && !actions.isImage;
  actions.isHDR = state->loaded() && state->file()->sourceIsHDR;
  actions.bitrateRange =
      EncodingSettings::bitrateRange(state->loaded() ? state->file()->sourceMbps : 0);
  actions.previewing = state->previewOnly();
  actions.inspecting = state->showInspector();
  return actions;
}

InspectorSource inspectorSourceOf(const EditorState& state) {
  InspectorSource source;
  if (state.loaded()) {
    source.imageSource = state.file()->imageSource;
    source.sourceMbps = state.file()->sourceMbps;
    source.sourceFPS = state.file()->sourceFPS;
    source.sourceBytes = state.file()->sourceBytes;
    source.sourceIsHDR = state.file()->sourceIsHDR;
    source.duration = state.file()->duration;
  }
  source.sourceSize = state.sourceSize();
  source.loaded = state.loaded();
  source.busy = state.busy();
  source.canExport = state.canExport();
  return source;
}

}  // namespace vantrel
