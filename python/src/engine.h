// The handles of one Python object: one for all threads if it has no grid file, else one for each conversion under way.
//
// Every member is called with the interpreter's lock held, which guards the list of handles; only the conversions run
// without it.
#pragma once

#include <list>
#include <memory>
#include <vector>

#include "handle.h"

namespace latigo::python {

class Engine {
  struct Slot {
    std::unique_ptr<Handle> handle;
    int users = 0;
  };

 public:
  // Opens the first handle. Throws as Handle does.
  explicit Engine(Definition definition);
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  // Handles for a call, one for each of its threads; returned at its end.
  class Lease {
   public:
    // Opens further handles of an object with grid files as needed. Throws as Handle does, and Failure if the object is
    // closed or a grid file is another than at first.
    Lease(Engine& engine, int threads);
    ~Lease();
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;

    const std::vector<Handle*>& Handles() const { return handles_; }
    Handle& First() const { return *handles_.front(); }

   private:
    Engine& engine_;
    std::vector<Slot*> slots_;
    std::vector<Handle*> handles_;
  };

  // Destroys the handles; those in use when their calls end.
  void Close();
  bool Closed() const { return closed_; }
  // The number of handles that exist.
  std::size_t Handles() const { return slots_.size(); }

 private:
  Slot& FreeSlot();
  void DropAfterFork();
  void DestroyIdle();

  const Definition definition_;
  std::list<Slot> slots_;
  Identity datumId_, geoidId_;  // of the files at first
  bool hasFiles_ = false;
  bool closed_ = false;
  unsigned forks_;  // in this process and its ancestors, when the handles were opened
};

// Called at the end of the process, without the interpreter: destroys the idle handles of all objects.
void DestroyAllIdle();

}  // namespace latigo::python
