// The layer table, for the folders above.
#pragma once

namespace zm::config {

/// After a change of the layers that was made here and not by a caller who has the table: lookups find it.
void LayersChanged();

}  // namespace zm::config
