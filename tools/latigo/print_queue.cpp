#include "print_queue.h"

#include <utility>

namespace latigo::cli {

PrintQueue::~PrintQueue() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void PrintQueue::Add(std::future<Output> output) {
  {
    const std::lock_guard lock(mutex_);
    underWay_.push_back(std::move(output));
  }
  changed_.notify_all();
}

void PrintQueue::WaitForFewerThan(std::size_t size) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return underWay_.size() < size || failure_; });
  if (failure_) {
    std::rethrow_exception(failure_);
  }
}

void PrintQueue::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return !underWay_.empty() || ended_; });
    if (underWay_.empty() || failure_) {
      return;
    }
    std::future<Output>& oldest = underWay_.front();  // its address is stable while others are added
    lock.unlock();
    std::exception_ptr failure;
    try {
      report_.Print(oldest.get());
    } catch (...) {
      failure = std::current_exception();
    }
    lock.lock();
    failure_ = failure;
    underWay_.pop_front();
    changed_.notify_all();
  }
}

}  // namespace latigo::cli
