#include "export/transfer_group.h"

#include <utility>

namespace vantrel {

TransferGroup::TransferGroup(const std::stop_token& parent, std::function<void()> onFailure)
    : m_parentStops(parent, [this] { m_stop.request_stop(); }), m_onFailure(std::move(onFailure)) {}

TransferGroup::~TransferGroup() {
  m_stop.request_stop();
}

void TransferGroup::add(Work work) {
  m_threads.emplace_back([this, work = std::move(work)] { run(work); });
}

void TransferGroup::wait() {
  m_threads.clear();
  if (m_firstError) std::rethrow_exception(m_firstError);
}

void TransferGroup::run(const Work& work) {
  try {
    work(m_stop.get_token());
  } catch (...) {
    {
      const std::scoped_lock lock(m_mutex);
      if (m_firstError) return;
      m_firstError = std::current_exception();
    }
    m_stop.request_stop();
    m_onFailure();
  }
}

}  // namespace vantrel
