#pragma once

// Private to this folder.

#include <functional>
#include <memory>
#include <vector>

#include "platform/gl/tile_loader.h"
#include "platform/gl/tile_source.h"

namespace vantrel {

/// Makes the tiles of a bitmap, which is not empty, on threads of its own. Lives on one thread.
class TileWorkshop {
 public:
  /// As TileLoader::Notify; never called any more once the workshop is gone.
  TileWorkshop(const Bitmap& bitmap, TileLoader::Notify notify);
  /// Waits for nothing: what is being made is given up, and the threads end and the bitmap's memory
  /// is freed in the background.
  ~TileWorkshop();
  TileWorkshop(const TileWorkshop&) = delete;
  TileWorkshop& operator=(const TileWorkshop&) = delete;

  [[nodiscard]] const Bitmap& bitmap() const;
  /// As those of TileLoader. Where there is no thread to be had, nothing is ever made.
  void want(const std::vector<TileId>& tiles);
  [[nodiscard]] std::vector<TileLoader::Loaded> take();

 private:
  struct Work;
  std::shared_ptr<Work> m_work;
};

}  // namespace vantrel
