#pragma once

/*
 * To be included before any platform header. The platform headers of some generations use names
 * from the headers below without including them: with the standard library of their time, other
 * headers included them.
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
