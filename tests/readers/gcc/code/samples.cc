// One function a difficulty that C++ adds: places where exceptions land, calls through objects.
#define APART __attribute__((noinline, noclone))

volatile int sink;

struct Noisy {
  explicit Noisy(int number) : number(number) { sink = number; }
  Noisy(const Noisy& other) : number(other.number + 1) { sink = number; }
  APART ~Noisy() { sink = -number; }
  int number;
};

struct Shape {
  virtual ~Shape() = default;
  virtual int Area(int a) const = 0;
};
struct Square : Shape {
  explicit Square(int side) : side(side) {}
  APART int Area(int a) const override {
    volatile int parts[12];
    parts[a & 7] = side;
    return parts[3] * side;
  }
  int side;
};

APART int may_throw(int a) {
  if (a == 3) {
    throw a;
  }
  if (a == 5) {
    throw Noisy(a);
  }
  return a + 1;
}

APART int cleans_up(int a) {
  Noisy first(a);
  volatile int room[20];
  room[a & 15] = may_throw(a);
  Noisy second(room[2]);
  return may_throw(second.number) + first.number;
}

APART int catches(int a) {
  volatile int room[9];
  try {
    room[a & 7] = cleans_up(a);
    return room[1];
  } catch (int number) {
    return may_throw(number + 8);
  } catch (const Noisy& noisy) {
    Noisy copy(noisy);
    return may_throw(copy.number);
  }
}

APART int catches_all(int a) noexcept {
  try {
    return catches(a) + catches(a + 1);
  } catch (...) {
    return may_throw(1);
  }
}

APART int through_object(const Shape& shape, int a) {
  return shape.Area(a) + 1;
}

APART int makes_object(int a) {
  const Shape* shape = new Square(a);
  const int area = through_object(*shape, a);
  delete shape;
  return area;
}

APART int throws_again(int a) {
  try {
    return catches(a);
  } catch (...) {
    sink = a;
    throw;
  }
}

template <typename Function>
APART int applies(Function function, int a) {
  int sum = 0;
  for (int i = 0; i < a; ++i) {
    sum += function(i);
  }
  return sum;
}

APART int with_closure(int a) {
  int calls = 0;
  const int sum = applies(
      [&](int i) {
        ++calls;
        return may_throw(i + 6) + a;
      },
      a);
  return sum + calls;
}

APART int returned_early(int a) {
  for (int i = 0; i < a; ++i) {
    Noisy noisy(i);
    if (may_throw(i + 7) > a) {
      return noisy.number;
    }
  }
  return 0;
}

int main(int count, char**) {
  return catches_all(count) + makes_object(count) + with_closure(count) + returned_early(count) +
         (count > 9 ? throws_again(count) : 0);
}
