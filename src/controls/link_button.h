#pragma once

#include <QAbstractButton>

namespace vantrel {

/// A button that looks like a link: small underlined text in the secondary colour. Main thread.
class LinkButton final : public QAbstractButton {
  Q_OBJECT

 public:
  explicit LinkButton(const QString& text, QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
};

}  // namespace vantrel
