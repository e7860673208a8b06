#include "editor/error_alert.h"

#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QWindow>
#include <utility>

#include "controls/message_layout.h"

namespace vantrel {

ErrorAlert::ErrorAlert(QString title, QWidget* parent)
    : QObject(parent), m_title(std::move(title)) {}

void ErrorAlert::setMessage(const std::optional<QString>& message) {
  if (!message) {
    if (m_box) m_box->reject();
    return;
  }
  const bool isNew = !m_box;
  if (isNew) {
    auto* const window = static_cast<QWidget*>(parent());
    m_box = new QMessageBox(QMessageBox::NoIcon, m_title, m_title, QMessageBox::Ok, window);
    m_box->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_box, &QDialog::finished, this, [this] {
      m_box = nullptr;
      Q_EMIT dismissed();
    });
  }
  m_box->setInformativeText(*message);
  layOutMessage(*m_box);
  if (!isNew) return;
  if (isWindowComing()) {
    qApp->installEventFilter(this);
  } else {
    m_box->open();
  }
}

bool ErrorAlert::isWindowComing() const {
  const QWidget* const window = static_cast<QWidget*>(parent())->window();
  const QWindow* const native = window->windowHandle();
  return window->isVisible() && !window->isMinimized() && !(native && native->isExposed());
}

bool ErrorAlert::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Expose && !isWindowComing()) {
    qApp->removeEventFilter(this);
    if (m_box) QMetaObject::invokeMethod(m_box, &QDialog::open, Qt::QueuedConnection);
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace vantrel
