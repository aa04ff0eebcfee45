#pragma once

/// From now on assistive programs see what a PaywallWidget shows.
void installPaywallAccessibility();
