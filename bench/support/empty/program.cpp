// What a start of any program costs.
int main()
{
    return 0;
}
