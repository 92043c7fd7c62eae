// Helpers shared by the tests.
#pragma once
