#pragma once

/// Thrown where a run that was asked to stop can do so with nothing half done. It is no failure and
/// no `std::exception`: what handles failures lets it pass, up to whoever was asked.
struct WantedStop {
  int signal;  ///< number of the signal that asked
};
