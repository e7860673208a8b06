#pragma once

#include <QFileDialog>

namespace vantrel {

/// Asks for one file to open. The toolkit's own dialog, which stands in where the desktop has none,
/// reads quotes as marks between several names; here they are part of the one name. It begins where
/// the last dialog ended. Main thread.
class OpenDialog final : public QFileDialog {
  Q_OBJECT

 public:
  explicit OpenDialog(QWidget* parent = nullptr, const QString& caption = {},
                      const QString& filter = {});

 protected:
  void accept() override;
};

}  // namespace vantrel
