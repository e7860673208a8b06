#include "export/temporary_export.h"

#include <system_error>
#include <utility>

namespace vantrel {

TemporaryExport::TemporaryExport(std::filesystem::path path) : m_path(std::move(path)) {}

TemporaryExport::TemporaryExport(TemporaryExport&& other) noexcept {
  m_path.swap(other.m_path);
}

TemporaryExport& TemporaryExport::operator=(TemporaryExport&& other) noexcept {
  TemporaryExport taken(std::move(other));
  m_path.swap(taken.m_path);
  return *this;
}

TemporaryExport::~TemporaryExport() {
  remove();
}

void TemporaryExport::remove() noexcept {
  if (m_path.empty()) return;
  std::error_code ignored;
  std::filesystem::remove(m_path, ignored);
  m_path.clear();
}

}  // namespace vantrel
