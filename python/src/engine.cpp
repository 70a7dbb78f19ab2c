#include "engine.h"

#include <pthread.h>

#include <algorithm>
#include <set>
#include <utility>

namespace latigo::python {

namespace {

unsigned forks = 0;  // counted in each child

std::set<Engine*>& Engines() {
  static auto* engines = [] {
    pthread_atfork(nullptr, nullptr, [] { ++forks; });
    return new std::set<Engine*>;  // never destroyed, since objects may outlive static data
  }();
  return *engines;
}

Identity IdOf(const GridFile* file) {
  return file != nullptr ? file->Id() : Identity{};
}

}  // namespace

Engine::Engine(Definition definition) : definition_(std::move(definition)) {
  Engines().insert(this);
  forks_ = forks;
  try {
    slots_.push_back({std::make_unique<Handle>(definition_)});
  } catch (...) {
    Engines().erase(this);
    throw;
  }
  const Handle& first = *slots_.front().handle;
  hasFiles_ = first.HasFiles();
  datumId_ = IdOf(first.DatumFile());
  geoidId_ = IdOf(first.GeoidFile());
}

Engine::~Engine() {
  Engines().erase(this);
}

void Engine::Close() {
  closed_ = true;
  DestroyIdle();
}

void Engine::DestroyIdle() {
  slots_.remove_if([](const Slot& slot) { return slot.users == 0; });
}

// In a child the handles that other threads of the parent used are idle, and grid files are opened anew.
void Engine::DropAfterFork() {
  if (forks_ == forks) {
    return;
  }
  forks_ = forks;
  if (hasFiles_) {
    slots_.clear();
  } else {
    std::for_each(slots_.begin(), slots_.end(), [](Slot& slot) { slot.users = 0; });
  }
}

Engine::Slot& Engine::FreeSlot() {
  for (Slot& slot : slots_) {
    if (!hasFiles_ || slot.users == 0) {
      return slot;
    }
  }
  auto handle = std::make_unique<Handle>(definition_);
  if (IdOf(handle->DatumFile()) != datumId_ || IdOf(handle->GeoidFile()) != geoidId_) {
    throw Failure{GridFileChanged, nullptr};
  }
  slots_.push_back({std::move(handle)});
  return slots_.back();
}

Engine::Lease::Lease(Engine& engine, int threads) : engine_(engine) {
  if (engine.closed_) {
    throw Failure{ObjectClosed, nullptr};
  }
  engine.DropAfterFork();
  const std::size_t before = engine.slots_.size();
  try {
    for (int i = 0; i < threads; ++i) {
      Slot& slot = engine.FreeSlot();
      ++slot.users;
      slots_.push_back(&slot);
      handles_.push_back(slot.handle.get());
    }
  } catch (...) {
    std::for_each(slots_.begin(), slots_.end(), [](Slot* slot) { --slot->users; });
    engine.slots_.resize(before);  // without those opened here: files may have run out
    throw;
  }
}

Engine::Lease::~Lease() {
  std::for_each(slots_.begin(), slots_.end(), [](Slot* slot) { --slot->users; });
  if (engine_.closed_) {
    engine_.DestroyIdle();
  }
}

void DestroyAllIdle() {
  for (Engine* engine : Engines()) {
    engine->Close();
  }
}

}  // namespace latigo::python
