// clsSTOREMNU: kept as a placeholder for a store of menu items; it has no members.
#pragma once

namespace tarn {

class clsSTOREMNU {};

} // namespace tarn
