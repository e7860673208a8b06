#include "model/edit_history.h"

#include <QUndoCommand>
#include <utility>

namespace vantrel {

/// The states on both sides of an edit. The history reads them and writes the state itself, once
/// the stack is done: a slot may then edit again without meeting a stack in the middle of its work.
class EditHistory::Step final : public QUndoCommand {
 public:
  Step(const CropEdit& stateBefore, const CropEdit& stateAfter)
      : QUndoCommand(EditHistory::tr("Crop and Encoding")),
        before(stateBefore),
        after(stateAfter) {}

  const CropEdit before, after;
};

template <typename Operation>
void EditHistory::announcing(Operation&& operation) {
  const CropEdit before = m_current;
  const int64_t revisionBefore = m_revision;
  operation();
  // Compared before the first signal, as a slot may edit again and then tells of that itself.
  const bool crop = before.crop != m_current.crop;
  const bool encoding = before.encoding != m_current.encoding;
  const bool imageEncoding = before.imageEncoding != m_current.imageEncoding;
  const bool revision = revisionBefore != m_revision;
  if (crop) Q_EMIT cropChanged();
  if (encoding) Q_EMIT encodingChanged();
  if (imageEncoding) Q_EMIT imageEncodingChanged();
  if (revision) Q_EMIT revisionChanged();
}

EditHistory::EditHistory(QObject* parent) : QObject(parent) {}

bool EditHistory::canUndo() const {
  return m_manager.canUndo() || (m_transaction && *m_transaction != m_current);
}

bool EditHistory::canRedo() const {
  return m_manager.canRedo();
}

void EditHistory::setCrop(const CropMargins& crop) {
  CropEdit edit = m_current;
  edit.crop = crop;
  set(edit);
}

void EditHistory::setCodec(EncodingSettings::Codec codec) {
  CropEdit edit = m_current;
  edit.encoding.codec = codec;
  set(edit);
}

void EditHistory::setBitrate(double megabitsPerSecond) {
  CropEdit edit = m_current;
  edit.encoding.megabitsPerSecond = megabitsPerSecond;
  set(edit);
}

void EditHistory::setImageEncoding(const ImageEncodingSettings& settings) {
  CropEdit edit = m_current;
  edit.imageEncoding = settings;
  set(edit);
}

void EditHistory::setPixelStep(int64_t step) {
  m_pixelStep = step;
}

void EditHistory::begin() {
  if (!m_transaction) m_transaction = m_current;
}

void EditHistory::end() {
  announcing([&] { closeTransaction(); });
}

void EditHistory::set(const CropEdit& edit) {
  announcing([&] { change(edit); });
}

void EditHistory::reset(const CropEdit& edit) {
  announcing([&] {
    m_transaction.reset();
    m_manager.clear();
    write(edit);
    ++m_revision;
  });
}

void EditHistory::resizeCrop(int64_t width, int64_t height, const QSizeF& in) {
  announcing([&] {
    const QPointF center = m_resizeCenter ? *m_resizeCenter : crop().rectangle(in).center();
    CropEdit edit = m_current;
    edit.crop = crop().resized(width, height, in, m_pixelStep, center);
    change(edit);
    m_resizeCenter = center;
  });
}

void EditHistory::undo() {
  announcing([&] {
    closeTransaction();
    if (m_manager.canUndo()) {
      m_manager.undo();
      write(static_cast<const Step*>(m_manager.command(m_manager.index()))->before);
    }
    ++m_revision;
  });
}

void EditHistory::redo() {
  announcing([&] {
    closeTransaction();
    if (m_manager.canRedo()) {
      m_manager.redo();
      write(static_cast<const Step*>(m_manager.command(m_manager.index() - 1))->after);
    }
    ++m_revision;
  });
}

void EditHistory::change(const CropEdit& edit) {
  if (edit == m_current) return;
  const bool couldUndo = canUndo();
  if (!m_transaction) push(m_current, edit);
  write(edit);
  if (m_transaction && canUndo() != couldUndo) ++m_revision;
}

void EditHistory::closeTransaction() {
  const std::optional<CropEdit> start = std::exchange(m_transaction, std::nullopt);
  if (start && *start != m_current) push(*start, m_current);
}

void EditHistory::push(const CropEdit& before, const CropEdit& after) {
  m_manager.push(new Step(before, after));
  ++m_revision;
}

// Every change of the crop drops the centre of resizing; resizeCrop puts it back.
void EditHistory::write(const CropEdit& edit) {
  if (edit.crop != m_current.crop) m_resizeCenter.reset();
  m_current = edit;
}

}  // namespace vantrel
