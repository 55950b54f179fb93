// Boost.JSON, which comes as headers, and is compiled here.

#include <boost/json/src.hpp>
