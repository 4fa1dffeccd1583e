#pragma once

namespace quillmeter {

// How much heat limits the machine. Main thread; never blocks.
class ThermalState {
 public:
  virtual ~ThermalState() = default;
  // 0 nominal, 1 fair, 2 serious (the system slows down), 3 critical; 0 where nothing is known.
  virtual int level() = 0;
};

}  // namespace quillmeter
