/* An example host in C: a payment voucher built by class and member names, printed to a PDF. */
#include <stdio.h>
#include <string.h>

#include "quorvel.h"

static quorvel_variant text(const char* value) {
  quorvel_variant v;
  memset(&v, 0, sizeof v);
  v.type = QUORVEL_TEXT;
  v.value.text = value;
  return v;
}

static quorvel_variant boolean(int value) {
  quorvel_variant v;
  memset(&v, 0, sizeof v);
  v.type = QUORVEL_BOOLEAN;
  v.value.boolean = value;
  return v;
}

static quorvel_variant object(quorvel_object* value) {
  quorvel_variant v;
  memset(&v, 0, sizeof v);
  v.type = QUORVEL_OBJECT;
  v.value.object = value;
  return v;
}

/* Stops at the first failure with the library's own message. */
static int check(int32_t status, const char* what) {
  int32_t number = 0;
  const char* message = "";
  if (status == QUORVEL_OK) return 1;
  quorvel_last_error(&number, &message);
  fprintf(stderr, "voucher_host: %s: error %d: %s\n", what, (int)number, message);
  return 0;
}

static int put(quorvel_object* target, const char* member, const char* value) {
  quorvel_variant v = text(value);
  return check(quorvel_put(target, member, &v), member);
}

int main(int argc, char** argv) {
  static const char* const fields[][2] = {
      {"Number", "PV-2024-0412"}, {"ReceiptDate", "12/04/2024"}, {"PayeeName", "Corvantis Paper Mills Ltd."},
      {"Amount", "2,480.00"}, {"SumofAmount", "Two Thousand Four Hundred Eighty Only"},
      {"PaymentMethod", "Cheque"}, {"ChequeNumber", "004611"}, {"Bank", "First Marovian Commercial Bank"},
      {"ChequeDate", "15/04/2024"}, {"Notes", "April paper supply"}};
  quorvel_object *company = NULL, *voucher = NULL, *printer = NULL;
  quorvel_variant company_args[12], print_args[3];
  size_t i;
  int ok;
  char* results = NULL;
  if (argc != 2) {
    fprintf(stderr, "usage: voucher_host OUT.pdf\n");
    return 2;
  }
  for (i = 0; i < 12; ++i) company_args[i] = text("");
  company_args[0] = text("Halvern Stationers LLC");
  company_args[10] = text("$");
  company_args[11] = text("Dollar");
  ok = check(quorvel_create("Quorvel.ClassCompanyInfo", &company), "ClassCompanyInfo") &&
       check(quorvel_call(company, "SetCompanyInfo", company_args, 12, NULL), "SetCompanyInfo") &&
       check(quorvel_printer_set_output(argv[1], "a4"), "output") &&
       check(quorvel_create("Quorvel.ClassVoucher", &voucher), "ClassVoucher") &&
       check(quorvel_create("Quorvel.ClassVoucherPrinter", &printer), "ClassVoucherPrinter");
  for (i = 0; ok && i < sizeof fields / sizeof fields[0]; ++i) ok = put(voucher, fields[i][0], fields[i][1]);
  if (ok) {
    print_args[0] = object(voucher);
    print_args[1] = boolean(1); /* printHeader */
    print_args[2] = boolean(0); /* isReceipt */
    ok = check(quorvel_call(printer, "PrintIt", print_args, 3, NULL), "PrintIt") &&
         check(quorvel_printer_last_results(&results, NULL), "results");
  }
  if (ok) printf("wrote %s\n", results);
  quorvel_text_free(results);
  quorvel_release(printer);
  quorvel_release(voucher);
  quorvel_release(company);
  return ok ? 0 : 1;
}
