// a leaf
