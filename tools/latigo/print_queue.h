// The queue between the threads that convert blocks and the output.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <future>
#include <mutex>
#include <thread>

#include "report.h"

namespace latigo::cli {

// A queue of blocks in work. Its thread prints each as soon as it is the oldest and finished, while the caller waits
// for input.
class PrintQueue {
 public:
  PrintQueue(Report& report, std::size_t size) : report_(report), size_(size), thread_([this] { Run(); }) {}
  ~PrintQueue();
  PrintQueue(const PrintQueue&) = delete;
  PrintQueue& operator=(const PrintQueue&) = delete;

  // Waits until the queue has room, or is empty. Rethrows an exception from printing.
  void WaitForRoom() { WaitForFewerThan(size_); }
  void WaitForAll() { WaitForFewerThan(1); }
  void Add(std::future<Output> output);

 private:
  void WaitForFewerThan(std::size_t size);

  void Run();

  Report& report_;
  std::size_t size_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::future<Output>> underWay_;
  bool ended_ = false;
  std::exception_ptr failure_;
  std::thread thread_;
};

}  // namespace latigo::cli
