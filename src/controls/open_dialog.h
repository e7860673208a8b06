#pragma once

#include <QFileDialog>

namespace vantrel {

/// Asks for one file to open. The toolkit's own dialog, which stands in where the desktop has none,
/// reads quotes as marks between several names; here they are part of the one name. Main thread.
class OpenDialog final : public QFileDialog {
  Q_OBJECT

 public:
  using QFileDialog::QFileDialog;

 protected:
  void accept() override;
};

}  // namespace vantrel
