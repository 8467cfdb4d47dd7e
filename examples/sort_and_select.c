/* Sorts a column, orders records by one of their fields, and picks the largest values.
 *
 * 1. A column of float32 readings is sorted in place by the radix sort, with a work
 *    buffer made once for the column's length and type.
 * 2. An array of order records is put in order of their price, a field in the middle
 *    of each record, by the stable radix index sort: the records stay where they are,
 *    and the sort reports the order to read them in.
 * 3. The 10 largest of a million generated values are taken with their positions by
 *    TopK, largest first.
 * Build: the examples/ folder of the project builds it as example_sort_and_select. */
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>

#include "zivks.h"

#define READINGS 12
#define ORDERS 8
#define COLUMN (1 << 20)
#define TOP 10

typedef struct {
  int32_t id;
  uint32_t price_cents; /* the sort key */
  int16_t quantity;
  char code[6];
} Order;

/* A small linear congruential generator, so the run is the same on every machine. */
static uint32_t next_random(uint32_t* state) {
  *state = *state * 1664525u + 1013904223u;
  return *state;
}

static int sort_column(void) {
  float readings[READINGS] = {3.5f, -1.25f, 0.0f, 12.0f, -7.5f, 2.25f, 9.0f, -0.5f, 4.0f, 1.0f, -3.0f, 6.5f};
  uint8_t* policy = NULL;
  if (ZIVKS_SortRadixInit(READINGS, ZIVK_DT_32F, &policy) != ZIVK_STS_NO_ERR) return 1;
  const ZIVKStatus st = ZIVKS_SortRadixAscend_32f_I(readings, READINGS, policy);
  ZIVKS_SortRadixRelease(policy);
  if (st != ZIVK_STS_NO_ERR) return 1;
  printf("readings, sorted ascending:");
  for (int i = 0; i < READINGS; ++i) printf(" %g", readings[i]);
  printf("\n\n");
  return 0;
}

static int order_records(void) {
  static const Order orders[ORDERS] = {
      {101, 2599, 3, "A-17"}, {102, 999, 10, "B-02"}, {103, 4500, 1, "A-03"},  {104, 999, 4, "C-11"},
      {105, 12000, 2, "D-40"}, {106, 150, 25, "B-09"}, {107, 2599, 7, "C-01"}, {108, 780, 12, "A-88"},
  };
  int32_t by_price[ORDERS];
  uint8_t* policy = NULL;
  if (ZIVKS_SortRadixIndexInit(ORDERS, ZIVK_DT_32U, &policy) != ZIVK_STS_NO_ERR) return 1;
  /* The key of record i is the price field at orders + i * sizeof(Order). */
  const ZIVKStatus st = ZIVKS_SortRadixIndexAscend_32u(&orders[0].price_cents, (int32_t)sizeof(Order), by_price,
                                                       ORDERS, policy);
  ZIVKS_SortRadixIndexRelease(policy);
  if (st != ZIVK_STS_NO_ERR) return 1;
  printf("orders by price (equal prices keep their input order):\n");
  for (int p = 0; p < ORDERS; ++p) {
    const Order* o = &orders[by_price[p]];
    printf("  #%d  %-5s %3d x %7.2f\n", o->id, o->code, o->quantity, o->price_cents / 100.0);
  }
  printf("\n");
  return 0;
}

static int top_values(void) {
  int32_t* column = ZIVKS_Malloc_32s(COLUMN);
  if (column == NULL) return 1;
  uint32_t state = 2024u;
  for (int i = 0; i < COLUMN; ++i) column[i] = (int32_t)(next_random(&state) >> 1) - 0x20000000;

  int32_t values[TOP], positions[TOP];
  uint8_t* policy = NULL;
  /* Method 2, the radix selection: stable, so equal values come lowest position first. */
  const int32_t method = 2;
  if (ZIVKS_TopKInit_32s(COLUMN, values, positions, TOP, method, &policy) != ZIVK_STS_NO_ERR) {
    ZIVKS_Free(column);
    return 1;
  }
  const ZIVKStatus st = ZIVKS_TopK_32s(column, 0, (int32_t)sizeof(int32_t), COLUMN, values, positions, TOP,
                                       method, policy);
  ZIVKS_TopKRelease(policy);
  ZIVKS_Free(column);
  if (st != ZIVK_STS_NO_ERR) return 1;
  printf("the %d largest of %d values:\n", TOP, COLUMN);
  for (int j = 0; j < TOP; ++j) printf("  %2d. %11d at position %7d\n", j + 1, values[j], positions[j]);
  return 0;
}

int main(void) {
  if (sort_column() != 0 || order_records() != 0 || top_values() != 0) {
    fprintf(stderr, "a call failed\n");
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
