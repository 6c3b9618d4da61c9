Attribute VB_Name = "ZintraLetter"
' Zintra's letter macro, kept in the template "Zintra Letter.dot". A letter started with
' the Zintra toolbar's letter button carries the folder, contact and subject it is to be
' filed under; this macro hands the finished letter to the Zintra add-in running in
' Outlook, which files it as a journal entry of type "Letter" with a copy of the document
' attached, and then closes the document.
'
' A document that was not made by the letter button is left untouched by the add-in.
Option Explicit

' Run when the letter is written (Developer > Macros, or a button on the Quick Access
' Toolbar or a toolbar of the template).
Public Sub LogLetterInZintra()
    Dim handler As Object
    On Error GoTo Failed
    If Documents.Count = 0 Then Exit Sub
    ' ZintraAddin.WordLetterHandler is installed with the add-in; created in Word it
    ' reaches the add-in of the running Outlook.
    Set handler = CreateObject("ZintraAddin.WordLetterHandler")
    handler.LogDocument ActiveDocument
    Exit Sub
Failed:
    MsgBox "Could not log the document" & vbCrLf & vbCrLf & Err.Description, _
        vbExclamation, "Zintra"
End Sub
