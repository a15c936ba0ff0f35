#pragma once

/* The middle one of the last samples, this one included. */
int filter(int sample);
