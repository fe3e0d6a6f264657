#pragma once

/*
 * Before any platform header. Those of some generations use names of these headers without
 * including them, because the standard library of their time brought the names along.
 */
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>
